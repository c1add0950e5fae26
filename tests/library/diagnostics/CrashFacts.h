#pragma once

#include <windows.h>

#include <cstdint>

// What a crashing child process tells its test about itself, in a file that both map. It is filled
// in by a vectored handler, which sees an exception before anybody else does.
namespace crash_test {

struct ExceptionFacts
{
    DWORD code;
    DWORD thread;
    std::uint64_t stackBase;
    std::uint64_t parameters[2];
    std::uint32_t parameterCount;
    std::uint32_t byteCount; // of the code that could be read
    std::uint8_t bytes[16];
    CONTEXT context;
};

struct Facts
{
    volatile LONG count; // of the exceptions seen, also of those there is no room for
    ExceptionFacts exceptions[4];
};

#ifdef _WIN64
inline std::uintptr_t CodePointer(const CONTEXT& context)
{
    return context.Rip;
}
inline std::uintptr_t StackPointer(const CONTEXT& context)
{
    return context.Rsp;
}
#else
inline std::uintptr_t CodePointer(const CONTEXT& context)
{
    return context.Eip;
}
inline std::uintptr_t StackPointer(const CONTEXT& context)
{
    return context.Esp;
}
#endif

} // namespace crash_test
