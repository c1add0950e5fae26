#pragma once

#include "PermanentMap.h"
#include "ThreadState.h"

#include <typeinfo>

namespace framework {

// Objects with an attached GDI handle.
PermanentMap<HGDIOBJ, CGdiObject>& GdiMap();

// The object of the handle: the attached one if it has this type, else the thread's temporary one.
template <class Object>
Object* GdiFromHandle(HGDIOBJ handle)
{
    if (!handle) return nullptr;
    if (auto* const permanent = dynamic_cast<Object*>(GdiMap().Find(handle))) return permanent;
    auto& temporary = ThreadState::Current().gdiObjects[{handle, typeid(Object)}];
    if (!temporary) temporary = std::make_unique<Object>();
    // A temporary object that was detached, or whose handle was destroyed, gets the handle again.
    if (!temporary->m_hObject) temporary->m_hObject = handle;
    return static_cast<Object*>(temporary.get());
}

} // namespace framework
