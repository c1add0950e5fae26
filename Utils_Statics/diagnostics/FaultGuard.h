#pragma once

#include <base/CompilerExtensions.h>

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace utils_statics {

// The registers of a context that every processor has.
#ifdef _WIN64
constexpr auto codeAddress = &CONTEXT::Rip;
constexpr auto stackAddress = &CONTEXT::Rsp;
#else
constexpr auto codeAddress = &CONTEXT::Eip;
constexpr auto stackAddress = &CONTEXT::Esp;
#endif

// The platform's record of the current thread: the bounds of its stack and, on x86, the list of the
// handlers in force.
inline NT_TIB& ThreadBlock() noexcept
{
    BASE_TRUST_SEGMENT_OFFSETS_BEGIN
    return *reinterpret_cast<NT_TIB*>(NtCurrentTeb());
    BASE_TRUST_SEGMENT_OFFSETS_END
}

// Keeps a fault in one part of the crash report from ending the report: the part stops where it
// faulted, and the next begins. Nothing is unwound, so a part owns only what may leak in a process
// that is about to end.
class FaultGuard
{
public:
    // Makes the guard work in this process. It is called once and before a crash, because it
    // allocates.
    static void Install() noexcept;

    // Runs a part; false when it faulted. Parts may contain guarded parts. Only one thread runs
    // them, the one that crashed, on any stack. Without Install a part runs unguarded.
    template <class Part>
    static bool Run(Part part) noexcept
    {
        return RunPart([](void* context) { (*static_cast<Part*>(context))(); }, &part);
    }

private:
    static bool RunPart(void (*part)(void*), void* context) noexcept;
    static LONG WINAPI OnException(EXCEPTION_POINTERS* exception) noexcept;
};

// Copies `size` bytes from any address of this process. False when not all of them can be read.
// Guard pages, such as those at the end of a stack, are not touched.
bool ReadMemory(std::uintptr_t address, void* out, std::size_t size) noexcept;

template <class Value>
bool ReadMemory(std::uintptr_t address, Value& out) noexcept
{
    return ReadMemory(address, &out, sizeof out);
}

} // namespace utils_statics
