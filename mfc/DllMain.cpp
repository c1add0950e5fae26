#include "ThreadState.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds)
{
    if (reason == DLL_THREAD_DETACH) framework::ThreadState::DeleteCurrent();
    // When the process ends, the system takes everything back, and other threads were stopped
    // anywhere.
    if (reason == DLL_PROCESS_DETACH && !processEnds) framework::ThreadState::DeleteAll();
    return TRUE;
}
