#pragma once

#include "HandleOwner.h"

#include <windows.h>

namespace framework {

struct RegistryKeyTraits
{
    using Handle = HKEY;
    static void Release(HKEY key) noexcept { RegCloseKey(key); }
};
using RegistryKey = HandleOwner<RegistryKeyTraits>;

struct HookTraits
{
    using Handle = HHOOK;
    static void Release(HHOOK hook) noexcept { UnhookWindowsHookEx(hook); }
};
using Hook = HandleOwner<HookTraits>;

struct ScreenContextTraits
{
    using Handle = HDC;
    static void Release(HDC context) noexcept { ReleaseDC(nullptr, context); }
};
using ScreenContext = HandleOwner<ScreenContextTraits>;

} // namespace framework
