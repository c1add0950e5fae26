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

// The drawing objects of this process. Where the platform does not count them, all possible handles
// are tried; the upper half of a handle may be left out.
inline DWORD DrawingObjectCount()
{
    DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (count > 0) return count;
    for (std::uintptr_t value = 1; value <= 0xFFFF; ++value)
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(value)) != 0;
    return count;
}

inline BOOL CALLBACK CountOwnWindow(HWND window, LPARAM count)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    *reinterpret_cast<DWORD*>(count) += process == GetCurrentProcessId();
    return TRUE;
}

// The windows of this process, those that take messages alone too.
inline DWORD WindowCount()
{
    DWORD count = 0;
    EnumChildWindows(GetDesktopWindow(), CountOwnWindow, reinterpret_cast<LPARAM>(&count));
    if (const HWND first = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr))
        EnumChildWindows(GetAncestor(first, GA_PARENT), CountOwnWindow,
                         reinterpret_cast<LPARAM>(&count));
    return count;
}

inline bool IsIcon(HICON icon)
{
    ICONINFO parts{};
    if (!GetIconInfo(icon, &parts)) return false;
    DeleteObject(parts.hbmMask);
    DeleteObject(parts.hbmColor);
    return true;
}

// The windows, menus and icons of this process. Where the platform does not count them, the first
// 4096 possible handles of menus and icons are tried, of which it gives the free ones away first.
inline DWORD UserObjectCount()
{
    DWORD count = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    if (count > 0) return count;
    count = WindowCount();
    constexpr std::uintptr_t first = 0x20;
    for (std::uintptr_t value = first; value < first + std::uintptr_t{2} * 4096; value += 2)
        count += IsMenu(reinterpret_cast<HMENU>(value)) || IsIcon(reinterpret_cast<HICON>(value));
    return count;
}

} // namespace test_support
