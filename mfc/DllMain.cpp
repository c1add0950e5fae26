#include "ThreadState.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds)
{
    if (reason == DLL_THREAD_DETACH) framework::ThreadState::DeleteCurrent();
    // At the end of the process the system frees everything, and other threads were stopped at any
    // point.
    if (reason == DLL_PROCESS_DETACH && !processEnds) framework::ThreadState::DeleteAll();
    return TRUE;
}
