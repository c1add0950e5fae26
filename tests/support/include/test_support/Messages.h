#pragma once

#include <windows.h>

namespace test_support {

// Dispatches the messages in this thread's queue.
inline void Pump()
{
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
        DispatchMessageW(&message);
}

// Dispatches this thread's messages until the condition holds; false when it does not hold in time.
template <class Condition>
bool PumpUntil(const Condition& holds, DWORD milliseconds = 60'000)
{
    const ULONGLONG deadline = GetTickCount64() + milliseconds;
    for (;;) {
        Pump();
        if (holds()) return true;
        if (GetTickCount64() >= deadline) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

} // namespace test_support
