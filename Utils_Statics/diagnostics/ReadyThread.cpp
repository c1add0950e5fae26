#include "diagnostics/ReadyThread.h"

#include "diagnostics/FaultGuard.h"

#include <base/Handles.h>

namespace utils_statics {

namespace {
constexpr DWORD stackSize = 256 * 1024; // of addresses; a report and what it calls need less
constexpr DWORD startTimeout = 1'000;   // milliseconds; longer only under the loader's lock
} // namespace

void ReadyThread::Start() noexcept
{
    m_running = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    m_begin = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    m_done = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    if (!m_running || !m_begin || !m_done) return;
    const base::Thread thread(
        CreateThread(nullptr, stackSize, Loop, this, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
    m_isReady = static_cast<bool>(thread);
    if (m_isReady) WaitForSingleObject(m_running, startTimeout);
}

bool ReadyThread::Run(void (*work)(), DWORD milliseconds) noexcept
{
    if (!m_isReady) return false;
    m_work = work;
    SetEvent(m_begin);
    m_isReady = WaitForSingleObject(m_done, milliseconds) == WAIT_OBJECT_0;
    return m_isReady;
}

DWORD WINAPI ReadyThread::Loop(void* self) noexcept
{
    auto& thread = *static_cast<ReadyThread*>(self);
    SetEvent(thread.m_running);
    for (;;) {
        WaitForSingleObject(thread.m_begin, INFINITE);
        FaultGuard::Run(thread.m_work);
        SetEvent(thread.m_done);
    }
}

} // namespace utils_statics
