#include "CrashKinds.h"

#include "diagnostics/FaultGuard.h"
#include "FilterCalls.h"

#include <base/Handles.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/zelLogger.h>
#include <test_support/ImportHook.h>

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace crash_test {

namespace {

// No platform maps anything at this address.
constexpr std::uintptr_t nowhere = 0x10;

volatile int s_sink = 0;

[[gnu::noinline]] void Read()
{
    s_sink = *reinterpret_cast<volatile int*>(nowhere);
}

[[gnu::noinline]] void Write()
{
    *reinterpret_cast<volatile int*>(nowhere) = 1;
}

[[gnu::noinline]] void Execute()
{
    reinterpret_cast<void (*)()>(nowhere)();
}

// Executes a page of code that is a guard page, so that the fetch of the instruction faults.
void ExecuteGuardPage()
{
    void* const page = VirtualAlloc(nullptr, 0x1000, MEM_COMMIT | MEM_RESERVE,
                                    PAGE_EXECUTE_READWRITE | PAGE_GUARD);
    reinterpret_cast<void (*)()>(page)();
}

[[gnu::noinline]] void Divide()
{
    volatile int one = 1;
    volatile int zero = 0;
    s_sink = one / zero;
}

// Recurses without bound. The addition keeps the compiler from making it a loop.
[[gnu::noinline]] int Recurse(int depth)
{
    volatile char frame[512];
    frame[0] = static_cast<char>(depth);
    return Recurse(depth + 1) + frame[0];
}

// Recurses without bound, nearly all of the time in the heap, under its lock.
[[gnu::noinline]] int RecurseInHeap(int depth)
{
    volatile char frame[24];
    frame[0] = static_cast<char>(depth);
    HeapFree(GetProcessHeap(), 0, HeapAlloc(GetProcessHeap(), 0, 40));
    return RecurseInHeap(depth + 1) + frame[0];
}

// Recurses without bound in the loader.
[[gnu::noinline]] int RecurseInLoader(int depth)
{
    volatile char frame[24];
    frame[0] = static_cast<char>(depth);
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    frame[1] = GetProcAddress(kernel, "HeapAlloc") != nullptr;
    return RecurseInLoader(depth + 1) + frame[0];
}

// Lets one exception of the x87 unit through. The next instruction that waits for the unit raises
// it.
void LetThrough(std::uint16_t exception)
{
    const auto control = static_cast<std::uint16_t>(0x037F & ~exception);
    asm volatile("fninit; fldcw %0" : : "m"(control));
}

void Scale(int power)
{
    asm volatile("fildl %0; fld1; fscale; fwait" : : "m"(power));
}

#ifndef _WIN64
void IntegerOverflow()
{
    asm volatile("movl $0x7FFFFFFF, %%eax; addl $1, %%eax; into" : : : "eax", "cc");
}

void ArrayBounds()
{
    const int bounds[2] = {1, 2};
    asm volatile("bound %0, %1" : : "r"(7), "m"(bounds));
}
#endif

// Destroys the stack above this frame, as far as it is not the platform's, and with it the way
// back.
[[gnu::noinline]] void DestroyStack()
{
    volatile char here = 0;
    auto* const from = reinterpret_cast<volatile char*>(&here) + 64;
#ifdef _WIN64
    for (int i = 0; i < 2048; ++i)
        from[i] = static_cast<char>(0xA5);
    asm volatile("movabs $0xA5A5A5A5A5A5A5A5, %%rbp; jmp *%%rbp" : : : "memory");
#else
    // Stops at the first of the exception handlers, without which nobody is told.
    auto* const end = reinterpret_cast<volatile char*>(utils_statics::ThreadBlock().ExceptionList);
    for (volatile char* at = from; at < end; ++at)
        *at = static_cast<char>(0xA5);
    asm volatile("movl $0xA5A5A5A5, %%ebp; jmp *%%ebp" : : : "memory");
#endif
}

// Crashes on a small stack that is not the thread's own.
[[gnu::noinline]] void LeaveStack()
{
    constexpr std::size_t size = 64 * 1024;
    auto* const memory =
        static_cast<char*>(VirtualAlloc(nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    char* const top = memory + size - 256;
#ifdef _WIN64
    asm volatile("movq %0, %%rsp; ud1 %%eax, %%eax" : : "r"(top) : "memory");
#else
    asm volatile("movl %0, %%esp; ud1 %%eax, %%eax" : : "r"(top) : "memory");
#endif
}

// Takes the whole heap, in pieces down to the smallest. The compiler must not know that nobody uses
// them. Wine's own memory comes from the same addresses, and without any it opens no file. The
// listing of a large folder takes some meanwhile, and gives it back at the end.
void TakeHeap()
{
    wchar_t folder[MAX_PATH] = {};
    GetSystemDirectoryW(folder, MAX_PATH);
    WIN32_FIND_DATAW first = {};
    const base::Find listing(FindFirstFileW((std::wstring(folder) + L"\\*").c_str(), &first));
    void* volatile taken = nullptr;
    for (std::size_t size = 64 * 1024 * 1024; size >= 16; size /= 2)
        do
            taken = std::malloc(size);
        while (taken);
}

// Throws for want of memory; nobody catches it.
void WantMemory()
{
    TakeHeap();
    char* volatile const wanted = new char[1024 * 1024];
    s_sink = wanted[0];
}

LONG WINAPI ReadInHandler(EXCEPTION_POINTERS* exception)
{
    if (exception->ExceptionRecord->ExceptionCode == 0xE0000001) Read();
    return EXCEPTION_CONTINUE_SEARCH;
}

void InVectoredHandler()
{
    AddVectoredExceptionHandler(FALSE, ReadInHandler);
    RaiseException(0xE0000001, 0, 0, nullptr);
}

void InCatchBlock()
{
    try {
        throw 1;
    } catch (int) {
        Read();
    }
}

// Crashes two threads at once; whichever is first is reported.
void TwoThreads()
{
    const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const auto crash = [start] {
        WaitForSingleObject(start, INFINITE);
        Read();
    };
    std::thread first(crash);
    std::thread second(crash);
    Sleep(100); // lets both wait; the result does not need it
    SetEvent(start);
    first.join();
    second.join();
}

void LockHeap()
{
    HeapLock(GetProcessHeap());
}

void LockLoader()
{
    using Lock = LONG(WINAPI*)(ULONG, ULONG*, ULONG_PTR*);
    const auto lock = reinterpret_cast<Lock>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "LdrLockLoaderLock")));
    ULONG_PTR cookie = 0;
    if (lock) lock(0, nullptr, &cookie);
}

// Waits for the first thread, whose filter begins with setting the process's error mode.
void WaitForTheFirst()
{
    while (GetErrorMode() != SEM_NOGPFAULTERRORBOX)
        Sleep(1);
    Sleep(50); // for the flag that is cleared right after it
}

DWORD WINAPI CrashAsSecond(void* isReady)
{
    SetEvent(isReady);
    WaitForTheFirst();
    Write();
    return 0;
}

// Ends the process after the filter as the platform would, with 40 plus the filter's result.
template <void (*lock)()>
DWORD WINAPI CallFilterAsSecond(void* isReady)
{
    lock();
    SetEvent(isReady);
    WaitForTheFirst();
    const LONG result = Exception().Filter();
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(40 + result));
    return 0;
}

// Crashes while a second thread crashes too.
void WithASecondThread(LPTHREAD_START_ROUTINE second)
{
    SetErrorMode(0);
    const HANDLE isReady = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(CreateThread(nullptr, 0, second, isReady, 0, nullptr));
    WaitForSingleObject(isReady, INFINITE);
    Read();
}

void InLogHook()
{
    qor_utils::SetLogHook([](const qor_utils::LogMessage&, void*) { Read(); }, nullptr);
    zelLogger::zelLogHelper("crash_kinds", 1, 1)(L"about to crash");
}

// Stands for a function that releases a lock of the logger, but keeps its thread from doing so.
constinit HANDLE s_isStuck = nullptr;

void WINAPI NeverRelease(void*)
{
    SetEvent(s_isStuck);
    Sleep(INFINITE);
}

DWORD WINAPI ChangeLogFolder(void*)
{
    qor_utils::SetLogDirectory(zelLogger::getCurrentDirectory());
    return 0;
}

DWORD WINAPI WriteToLog(void*)
{
    zelLogger::zelLogHelper("crash_kinds", 1, 1)(L"is never written to its end");
    return 0;
}

// Crashes while another thread, which never goes on, holds the lock that `release` would release.
void UnderLoggersLock(const char* release, LPTHREAD_START_ROUTINE use)
{
    s_isStuck = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const test_support::ImportHook hook(L"qor_utils.dll", release, &NeverRelease);
    CloseHandle(CreateThread(nullptr, 0, use, nullptr, 0, nullptr));
    WaitForSingleObject(s_isStuck, INFINITE);
    Read();
}

constexpr long long millisecond = 10'000;
constexpr long long minute = 60'000 * millisecond;
constexpr long long longRun = (3 * 24 * 60 + 4 * 60 + 5) * minute + 6'789 * millisecond + 1'234;

struct Kind
{
    const char* name;
    void (*crash)();
};

LRESULT CALLBACK ReadInProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NULL) Read();
    return DefWindowProcW(window, message, wParam, lParam);
}

void InWindowProcedure()
{
    const HWND window = CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                        nullptr, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ReadInProcedure));
    SendMessageW(window, WM_NULL, 0, 0);
}

BOOL CALLBACK ReadInCallback(INIT_ONCE*, void*, void**)
{
    Read();
    return TRUE;
}

void InSystemCallback()
{
    INIT_ONCE once = INIT_ONCE_STATIC_INIT;
    InitOnceExecuteOnce(&once, ReadInCallback, nullptr, nullptr);
}

// Crashes while the program's own end is under way.
void AtTheEnd()
{
    std::atexit(Read);
    std::exit(0);
}

constexpr Kind kinds[] = {
    {"read", Read},
    {"write", Write},
    {"execute", Execute},
    {"guard-page", ExecuteGuardPage},
    {"illegal", [] { asm volatile("ud1 %eax, %eax"); }},
    {"privileged", [] { asm volatile("hlt"); }},
    {"breakpoint", [] { asm volatile("int3"); }},
    {"divide", Divide},
    {"float-invalid",
     [] {
         LetThrough(0x01);
         asm volatile("fldz; fldz; fdivrp; fwait");
     }},
    {"float-denormal",
     [] {
         LetThrough(0x02);
         const double denormal = 4.9e-324;
         asm volatile("fldl %0; fld1; faddp; fwait" : : "m"(denormal));
     }},
    {"float-divide",
     [] {
         LetThrough(0x04);
         asm volatile("fld1; fldz; fdivrp; fwait");
     }},
    {"float-overflow",
     [] {
         LetThrough(0x08);
         Scale(20000);
     }},
    {"float-underflow",
     [] {
         LetThrough(0x10);
         Scale(-20000);
     }},
    {"float-inexact",
     [] {
         LetThrough(0x20);
         const int three = 3;
         asm volatile("fld1; fidivl %0; fwait" : : "m"(three));
     }},
    {"float-stack",
     [] {
         LetThrough(0x01);
         asm volatile("fld1; fld1; fld1; fld1; fld1; fld1; fld1; fld1; fld1; fwait");
     }},
#ifndef _WIN64
    {"overflow", IntegerOverflow},
    {"bounds", ArrayBounds},
#endif
    {"stack-overflow", [] { s_sink = Recurse(0); }},
    {"overflow-in-heap", [] { s_sink = RecurseInHeap(0); }},
    {"overflow-in-loader", [] { s_sink = RecurseInLoader(0); }},
    {"destroyed-stack", DestroyStack},
    {"left-stack", LeaveStack},
    {"heap-exhausted",
     [] {
         TakeHeap();
         Read();
     }},
    {"bad-alloc", WantMemory},
    {"vectored-handler", InVectoredHandler},
    {"catch-block", InCatchBlock},
    {"window-procedure", InWindowProcedure},
    {"system-callback", InSystemCallback},
    {"start-up", Read},
    {"shut-down", AtTheEnd},
    {"two-threads", TwoThreads},
    {"second-thread", [] { WithASecondThread(CrashAsSecond); }},
    {"second-heap-lock", [] { WithASecondThread(CallFilterAsSecond<LockHeap>); }},
    {"second-loader-lock", [] { WithASecondThread(CallFilterAsSecond<LockLoader>); }},
    {"heap-lock",
     [] {
         LockHeap();
         Read();
     }},
    {"loader-lock",
     [] {
         LockLoader();
         Read();
     }},
    {"log-hook", InLogHook},
    {"logger-folder-lock", [] { UnderLoggersLock("ReleaseSRWLockExclusive", ChangeLogFolder); }},
    {"logger-file-lock", [] { UnderLoggersLock("LeaveCriticalSection", WriteToLog); }},
    {"call-filter", CallFilter},
    {"error-modes", CallFilterForErrorModes},
    {"unreadable-stack", CallFilterWithAnUnreadableStack},
    {"creation", CallFilterForCreation},
    {"long-run", [] { CallFilterAfter(longRun); }},
    {"millisecond-run", [] { CallFilterAfter(millisecond); }},
    {"short-run", [] { CallFilterAfter(millisecond - 1); }},
    {"clock-set-back", [] { CallFilterAfter(-minute); }},
    {"fault-in-filter", CallFilterWithAFaultInIt},
    {"message-in-filter", CallFilterWithAMessageInIt},
    {"unknown-user", CallFilterForAnUnknownUser},
    {"old-system", CallFilterOnAnOldSystem},
};

} // namespace

void Crash(const std::string& kind)
{
    char marker[64] = {}; // the report must find it on the stack
    std::memcpy(marker, "the marker that every crash leaves on its own stack", 51);
    volatile char* const onStack = marker;
    for (const Kind& known : kinds)
        if (kind == known.name) known.crash();
    if (kind.starts_with("0x"))
        RaiseException(static_cast<DWORD>(std::stoul(kind, nullptr, 16)), 0, 0, nullptr);
    s_sink = onStack[0];
}

} // namespace crash_test
