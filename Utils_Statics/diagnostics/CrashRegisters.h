#pragma once

#include <windows.h>

#include <cstdint>

// The differences between the architectures in a report: the names of the registers that every
// processor has, and the width of an address.
namespace utils_statics {

#ifdef _WIN64
#define ADDRESS_FORMAT L"%016I64x"
inline std::uintptr_t CodeAddress(const CONTEXT& context) noexcept
{
    return context.Rip;
}
inline std::uintptr_t StackAddress(const CONTEXT& context) noexcept
{
    return context.Rsp;
}
#else
#define ADDRESS_FORMAT L"%08x"
inline std::uintptr_t CodeAddress(const CONTEXT& context) noexcept
{
    return context.Eip;
}
inline std::uintptr_t StackAddress(const CONTEXT& context) noexcept
{
    return context.Esp;
}
#endif

} // namespace utils_statics
