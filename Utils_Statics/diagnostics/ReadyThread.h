#pragma once

#include <windows.h>

namespace utils_statics {

// A thread that waits for one piece of work at a time. It is made before it is needed, because a
// crashed process may not be able to make one. Constant-initialised; it never ends.
class ReadyThread
{
public:
    constexpr ReadyThread() noexcept = default;
    ReadyThread(const ReadyThread&) = delete;
    ReadyThread& operator=(const ReadyThread&) = delete;

    // Makes the thread and waits until it runs: one that only begins could still be held up by the
    // loader's lock. Called once.
    void Start() noexcept;

    // Runs the work on the thread and waits for it. False when there is no thread or it does not
    // finish in time; the thread then runs nothing else, and the work must not refer to the
    // caller's stack.
    bool Run(void (*work)(), DWORD milliseconds) noexcept;

private:
    static DWORD WINAPI Loop(void* self) noexcept;

    HANDLE m_running = nullptr; // these three: never closed, as the thread never ends
    HANDLE m_begin = nullptr;
    HANDLE m_done = nullptr;
    void (*m_work)() = nullptr;
    bool m_isReady = false;
};

} // namespace utils_statics
