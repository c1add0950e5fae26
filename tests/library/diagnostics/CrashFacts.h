#pragma once

#include <windows.h>

#include <cstdint>

// The facts that a crashing child process records about itself for its test, in a file that both
// map. A vectored handler fills it in, because it sees an exception before any other handler.
namespace crash_test {

struct ExceptionFacts
{
    DWORD code;
    DWORD thread;
    std::uint64_t address; // as the exception's record gives it
    std::uint64_t stackBase;
    std::uint64_t parameters[2];
    std::uint32_t parameterCount;
    std::uint32_t byteCount; // number of code bytes that could be read
    std::uint8_t bytes[16];
    CONTEXT context;
};

struct Facts
{
    FILETIME begin;      // of the first exception
    volatile LONG count; // number of exceptions seen, even beyond the room here
    ExceptionFacts exceptions[4];
};

#ifdef _WIN64
constexpr auto codePointer = &CONTEXT::Rip;
constexpr auto stackPointer = &CONTEXT::Rsp;
#else
constexpr auto codePointer = &CONTEXT::Eip;
constexpr auto stackPointer = &CONTEXT::Esp;
#endif

} // namespace crash_test
