#include "base/Dpi.h"

#include <base/GdiHandles.h>

namespace exam {

int DpiOf(HWND window)
{
    // The platform's own function is younger than the oldest platform.
    using Function = UINT(WINAPI*)(HWND);
    const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    const UINT dpi = function ? function(window) : 0;
    if (dpi != 0) return static_cast<int>(dpi);
    return GetDeviceCaps(base::WindowContext(window).get(), LOGPIXELSX);
}

} // namespace exam
