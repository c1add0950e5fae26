#pragma once

#include <base/Owner.h>

#include <windows.h>
#include <unknwn.h>
#include <oleauto.h>

namespace base {

/// Owns one reference to a COM object and gives it up by Release. The object may be a proxy for
/// another apartment's. The owner belongs to the thread that may call it.
template <class Interface>
struct ComTraits
{
    using Handle = Interface*;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle object) noexcept { object->Release(); }
};
template <class Interface>
using ComPointer = Owner<ComTraits<Interface>>;

/// Owns a result of SysAllocString, which is null when memory is short.
struct BstrTraits
{
    using Handle = BSTR;
    static BSTR Empty() noexcept { return nullptr; }
    static void Release(BSTR text) noexcept { SysFreeString(text); }
};
using Bstr = Owner<BstrTraits>;

} // namespace base
