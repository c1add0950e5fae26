// Part of the library in a coverage build alone: writes the counters of a process that crashes,
// which are otherwise written only when a process ends by itself. This file defines the library's
// imports of two functions, so that they go through here.
#include <windows.h>

extern "C" void __gcov_dump();

namespace {

constexpr DWORD longestWait = 5'000; // milliseconds; the crashed thread may hold a lock

DWORD WINAPI WriteOnThread(void*)
{
    __gcov_dump();
    return 0;
}

// The crashed thread may have no stack left.
void WriteCounters()
{
    const HANDLE thread = CreateThread(nullptr, 0, WriteOnThread, nullptr, 0, nullptr);
    if (!thread) return;
    WaitForSingleObject(thread, longestWait);
    CloseHandle(thread);
}

template <class Function>
Function PlatformsOwn(const char* name)
{
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

LPTOP_LEVEL_EXCEPTION_FILTER s_filter = nullptr;

LONG WINAPI FilterAndCount(EXCEPTION_POINTERS* exception)
{
    const LONG result = s_filter(exception);
    WriteCounters();
    return result;
}

LPTOP_LEVEL_EXCEPTION_FILTER WINAPI SetFilter(LPTOP_LEVEL_EXCEPTION_FILTER filter)
{
    s_filter = filter;
    const auto set =
        PlatformsOwn<decltype(&SetUnhandledExceptionFilter)>("SetUnhandledExceptionFilter");
    return set(filter ? FilterAndCount : nullptr);
}

BOOL WINAPI Terminate(HANDLE process, UINT code)
{
    // Looked up before: the thread that writes may come to wait with the loader's lock.
    const auto terminate = PlatformsOwn<decltype(&TerminateProcess)>("TerminateProcess");
    if (process == GetCurrentProcess()) WriteCounters();
    return terminate(process, code);
}

} // namespace

extern "C" {
extern const decltype(&SetUnhandledExceptionFilter)
    filterImport __asm__("__imp__SetUnhandledExceptionFilter@4");
extern const decltype(&TerminateProcess) terminateImport __asm__("__imp__TerminateProcess@8");
const decltype(&SetUnhandledExceptionFilter) filterImport = SetFilter;
const decltype(&TerminateProcess) terminateImport = Terminate;
}
