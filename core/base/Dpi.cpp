#include "base/Dpi.h"

#include <base/GdiHandles.h>

namespace exam {

namespace {

constinit int s_assumed = 0;

} // namespace

void AssumeDpi(int dpi)
{
    s_assumed = dpi;
}

int DpiOf(HWND window)
{
    if (s_assumed != 0) return s_assumed;
    // The platform's own function is younger than the oldest platform.
    using Function = UINT(WINAPI*)(HWND);
    const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    const UINT dpi = function ? function(window) : 0;
    if (dpi != 0) return static_cast<int>(dpi);
    return GetDeviceCaps(base::WindowContext(window).get(), LOGPIXELSX);
}

} // namespace exam
