#pragma once

#include <windows.h>

namespace utils_statics {

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

} // namespace utils_statics
