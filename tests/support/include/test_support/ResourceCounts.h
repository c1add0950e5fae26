#pragma once

#include <windows.h>

namespace test_support {

// The kernel handles that this process has open.
inline DWORD handleCount()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

// The drawing objects of this process.
inline DWORD drawingObjectCount()
{
    return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
}

// The windows, menus and other user objects of this process.
inline DWORD userObjectCount()
{
    return GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
}

} // namespace test_support
