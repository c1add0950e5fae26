#pragma once

#include <windows.h>

namespace test_support {

// The kernel handles that this process has open.
inline DWORD HandleCount()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

// The drawing objects of this process.
inline DWORD DrawingObjectCount()
{
    return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
}

// The windows, menus and other user objects of this process.
inline DWORD UserObjectCount()
{
    return GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
}

} // namespace test_support
