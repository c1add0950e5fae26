#include "GdiMap.h"

#include <utility>

namespace framework {

PermanentMap<HGDIOBJ, CGdiObject>& GdiMap()
{
    // Never destroyed: objects of other modules may go after this DLL's own.
    static auto& map = *new PermanentMap<HGDIOBJ, CGdiObject>;
    return map;
}

} // namespace framework

CGdiObject::~CGdiObject()
{
    DeleteObject();
}

BOOL CGdiObject::Attach(HGDIOBJ object)
{
    if (!object || m_hObject) return FALSE;
    m_hObject = object; // first: should memory be short for the map, the handle has its owner
    // A handle with an object already (a stock object, say) is attached all the same; FromHandle
    // answers the first.
    framework::GdiMap().Add(object, this);
    return TRUE;
}

HGDIOBJ CGdiObject::Detach()
{
    if (m_hObject) framework::GdiMap().Remove(m_hObject, this);
    return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject()
{
    return m_hObject && ::DeleteObject(Detach());
}

BOOL CGdiObject::Own(HGDIOBJ object)
{
    if (Attach(object)) return TRUE;
    if (object) ::DeleteObject(object);
    return FALSE;
}

CGdiObject* CGdiObject::FromHandle(HGDIOBJ object)
{
    return framework::GdiFromHandle<CGdiObject>(object);
}

void CGdiObject::DeleteTempMap()
{
    framework::ThreadState::Current().DeleteTemporaryGdiObjects();
}
