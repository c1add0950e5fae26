#include "GdiMap.h"

#include <utility>

namespace framework {

PermanentMap<HGDIOBJ, CGdiObject>& GdiMap()
{
    // The map is never destroyed: objects of other modules may be destroyed after this DLL's own.
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
    m_hObject = object; // set first: the handle then has an owner if memory is short for the map
    // A handle that already has an object (a stock object, say) is attached too. FromHandle returns
    // the first object.
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
