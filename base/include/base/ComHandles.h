#pragma once

#include <base/Owner.h>

#include <windows.h>

#include <unknwn.h>

#include <oleauto.h>

namespace base {

/// Of a COM object: one reference, given back by Release. The object may be of another apartment's
/// proxy; the owner belongs to the thread that may call it.
template <class Interface>
struct ComTraits
{
    using Handle = Interface*;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle object) noexcept { object->Release(); }
};
template <class Interface>
using ComPointer = Owner<ComTraits<Interface>>;

/// Of SysAllocString, which answers null when memory is short.
struct BstrTraits
{
    using Handle = BSTR;
    static BSTR Empty() noexcept { return nullptr; }
    static void Release(BSTR text) noexcept { SysFreeString(text); }
};
using Bstr = Owner<BstrTraits>;

} // namespace base
