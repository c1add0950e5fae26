#pragma once

#include <windows.h>

namespace utils_statics {

// Keeps a fault inside one part of the crash report from ending the report: the part is left where
// it faulted, and the next begins. Nothing is unwound then, so a part owns nothing that matters in
// a process that is about to end.
class FaultGuard
{
public:
    // Makes the guard work in this process. Called once, before anything has crashed: it needs
    // memory.
    static void Install() noexcept;

    // Runs a part; false when it faulted. Parts may contain guarded parts. They belong to one
    // thread, the one that crashed, on whatever stack it is. Without Install a part runs unguarded.
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
