#pragma once

#include <windows.h>

#include <cstdint>

namespace test_support {

// The kernel handles that this process has open. Where the platform does not count them, its first
// 4096 possible ones are tried, of which it gives the free ones away first.
inline DWORD HandleCount()
{
    DWORD count = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &count) && count > 0) return count;
    for (std::uintptr_t value = 4; value <= std::uintptr_t{4} * 4096; value += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE;
    }
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
