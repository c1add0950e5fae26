#include "crash_kinds.h"

#include "diagnostics/ThreadBlock.h"

#include <Utils_Statics/MiniDumper.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/zelLogger.h>
#include <test_support/ImportHook.h>

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>
#include <vector>

namespace crash_test {

namespace {

// Nothing is there on any platform.
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

// A page of code that guards something, as the instruction that faults.
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

// Without bound; the addition keeps it from becoming a loop.
[[gnu::noinline]] int Recurse(int depth)
{
    volatile char frame[512];
    frame[0] = static_cast<char>(depth);
    return Recurse(depth + 1) + frame[0];
}

// Without bound, and nearly all of the time in the heap, under its lock.
[[gnu::noinline]] int RecurseInHeap(int depth)
{
    volatile char frame[24];
    frame[0] = static_cast<char>(depth);
    HeapFree(GetProcessHeap(), 0, HeapAlloc(GetProcessHeap(), 0, 40));
    return RecurseInHeap(depth + 1) + frame[0];
}

// The same in the loader.
[[gnu::noinline]] int RecurseInLoader(int depth)
{
    volatile char frame[24];
    frame[0] = static_cast<char>(depth);
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    frame[1] = GetProcAddress(kernel, "HeapAlloc") != nullptr;
    return RecurseInLoader(depth + 1) + frame[0];
}

// The x87 unit with one of its exceptions let through; what it does not like is raised by the next
// instruction that waits for it.
void LetThrough(std::uint16_t exception)
{
    const auto control = static_cast<std::uint16_t>(0x037F & ~exception);
    asm volatile("fninit; fldcw %0" : : "m"(control));
}

void FloatInvalid()
{
    LetThrough(0x01);
    asm volatile("fldz; fldz; fdivrp; fwait");
}

void FloatDenormal()
{
    LetThrough(0x02);
    const double denormal = 4.9e-324;
    asm volatile("fldl %0; fld1; faddp; fwait" : : "m"(denormal));
}

void FloatDivide()
{
    LetThrough(0x04);
    asm volatile("fld1; fldz; fdivrp; fwait");
}

void Scale(int power)
{
    asm volatile("fildl %0; fld1; fscale; fwait" : : "m"(power));
}

void FloatOverflow()
{
    LetThrough(0x08);
    Scale(20000);
}

void FloatUnderflow()
{
    LetThrough(0x10);
    Scale(-20000);
}

void FloatInexact()
{
    LetThrough(0x20);
    const int three = 3;
    asm volatile("fld1; fidivl %0; fwait" : : "m"(three));
}

void FloatStack()
{
    LetThrough(0x01);
    asm volatile("fld1; fld1; fld1; fld1; fld1; fld1; fld1; fld1; fld1; fwait");
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

// Everything of the stack above this frame that is not the platform's is gone, and so is the way
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
    // Up to the first of the handlers, without which nobody is told.
    auto* const end = reinterpret_cast<volatile char*>(utils_statics::ThreadBlock().ExceptionList);
    for (volatile char* at = from; at < end; ++at)
        *at = static_cast<char>(0xA5);
    asm volatile("movl $0xA5A5A5A5, %%ebp; jmp *%%ebp" : : : "memory");
#endif
}

// On a small stack that is not the thread's own.
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

// All of it, in pieces down to the smallest. The compiler must not know that nobody uses them.
void TakeHeap()
{
    void* volatile taken = nullptr;
    for (std::size_t size = 64 * 1024 * 1024; size >= 16; size /= 2)
        do
            taken = std::malloc(size);
        while (taken);
}

void ExhaustHeap()
{
    TakeHeap();
    Read();
}

// Nobody catches it.
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

// Both at once; whichever is first is reported.
void TwoThreads()
{
    const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const auto crash = [start] {
        WaitForSingleObject(start, INFINITE);
        Read();
    };
    std::thread first(crash);
    std::thread second(crash);
    Sleep(100); // for both to wait; not needed for the result
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

void UnderHeapLock()
{
    LockHeap();
    Read();
}

void UnderLoaderLock()
{
    LockLoader();
    Read();
}

// An exception as the platform hands it to the filter.
struct Exception
{
    Exception()
    {
        RtlCaptureContext(&context);
        record.ExceptionCode = STATUS_ILLEGAL_INSTRUCTION;
    }
    LONG Filter() { return MiniDumper::TopLevelFilter(&pointers); }

    CONTEXT context = {};
    EXCEPTION_RECORD record = {};
    EXCEPTION_POINTERS pointers = {&record, &context};
};

// The first thread's filter begins with setting the process's error mode.
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

// Ends the process as the platform would when the filter returns, with 40 and what it returned.
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

// While a second thread crashes too.
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

// Stands for a function that releases a lock of the logger: the thread never gets so far.
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

// While another thread, which never goes on, holds the lock that `release` would release.
void UnderLoggersLock(const char* release, LPTHREAD_START_ROUTINE use)
{
    s_isStuck = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const test_support::ImportHook hook(L"qor_utils.dll", release,
                                        reinterpret_cast<void*>(&NeverRelease));
    CloseHandle(CreateThread(nullptr, 0, use, nullptr, 0, nullptr));
    WaitForSingleObject(s_isStuck, INFINITE);
    Read();
}

void UnderLoggersFolderLock()
{
    UnderLoggersLock("ReleaseSRWLockExclusive", ChangeLogFolder);
}

void UnderLoggersFileLock()
{
    UnderLoggersLock("LeaveCriticalSection", WriteToLog);
}

// Calls the filter as the platform would, twice, and ends with both results: the first one's tens,
// the second one's ones.
void CallFilter()
{
    Exception exception;
    const LONG first = exception.Filter();
    const LONG second = exception.Filter();
    ExitProcess(static_cast<UINT>(first * 10 + second));
}

// Ends with the error modes after the first and after the second call, in 4 bits each.
void CallFilterForErrorModes()
{
    Exception exception;
    SetErrorMode(SEM_FAILCRITICALERRORS);
    exception.Filter();
    const UINT first = GetErrorMode();
    SetErrorMode(SEM_FAILCRITICALERRORS);
    exception.Filter();
    ExitProcess(first << 4 | GetErrorMode());
}

// With a page of this very stack that cannot be read, and a stack pointer 64 bytes below it.
void CallFilterWithAnUnreadableStack()
{
    constexpr std::uintptr_t page = 0x1000;
    volatile char room[3 * page];
    room[0] = 0;
    const std::uintptr_t hole = (reinterpret_cast<std::uintptr_t>(room) + 2 * page) / page * page;
    Exception exception;
#ifdef _WIN64
    exception.context.Rsp = hole - 64;
#else
    exception.context.Esp = hole - 64;
#endif
    DWORD before = 0;
    VirtualProtect(reinterpret_cast<void*>(hole), page, PAGE_NOACCESS, &before);
    ExitProcess(static_cast<UINT>(exception.Filter()));
}

// What the report's file was created with.
struct Creation
{
    DWORD access, share, disposition, flags;
};
Creation s_creation = {};

HANDLE WINAPI SeeCreation(const wchar_t* path, DWORD access, DWORD share,
                          SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                          HANDLE form)
{
    const std::wstring_view name = path;
    if (name.ends_with(L".txt")) s_creation = {access, share, disposition, flags};
    return CreateFileW(path, access, share, security, disposition, flags, form);
}

// Ends with 1 when the file was created as it has to be.
void CallFilterForCreation()
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "CreateFileW",
                                        reinterpret_cast<void*>(&SeeCreation));
    Exception().Filter();
    ExitProcess(s_creation.access == GENERIC_WRITE && s_creation.share == 0 &&
                s_creation.disposition == CREATE_ALWAYS &&
                s_creation.flags == (FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH));
}

// A process that began at one moment and crashes at another, in UTC.
FILETIME s_begin = {};
FILETIME s_now = {};

BOOL WINAPI TellTimes(HANDLE, FILETIME* begin, FILETIME*, FILETIME*, FILETIME*)
{
    *begin = s_begin;
    return TRUE;
}

void WINAPI TellNow(FILETIME* now)
{
    *now = s_now;
}

// With a run of so many units of 100 nanoseconds, up to the 30th of June 2024, 09:05:07.
void CallFilterAfter(long long units)
{
    const SYSTEMTIME end = {2024, 6, 0, 30, 9, 5, 7, 0};
    SystemTimeToFileTime(&end, &s_now);
    const auto now = static_cast<long long>(s_now.dwHighDateTime) << 32 | s_now.dwLowDateTime;
    s_begin.dwHighDateTime = static_cast<DWORD>((now - units) >> 32);
    s_begin.dwLowDateTime = static_cast<DWORD>(now - units);
    const test_support::ImportHook times(L"Utils_Statics.dll", "GetProcessTimes",
                                         reinterpret_cast<void*>(&TellTimes));
    const test_support::ImportHook clock(L"Utils_Statics.dll", "GetSystemTimeAsFileTime",
                                         reinterpret_cast<void*>(&TellNow));
    ExitProcess(static_cast<UINT>(Exception().Filter()));
}

constexpr long long millisecond = 10'000;
constexpr long long minute = 60'000 * millisecond;
constexpr long long longRun = (3 * 24 * 60 + 4 * 60 + 5) * minute + 6'789 * millisecond + 1'234;

LONG WINAPI TellOldSystem(OSVERSIONINFOW* system)
{
    system->dwPlatformId = VER_PLATFORM_WIN32_NT;
    system->dwMajorVersion = 5;
    system->dwMinorVersion = 1;
    system->dwBuildNumber = 2600;
    return 0;
}

FARPROC WINAPI FindOldSystem(HMODULE library, const char* name)
{
    if (std::strcmp(name, "RtlGetVersion") != 0) return GetProcAddress(library, name);
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&TellOldSystem));
}

// Where no crash handler was made before, so that the system is asked for now.
void CallFilterOnAnOldSystem()
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "GetProcAddress",
                                        reinterpret_cast<void*>(&FindOldSystem));
    ExitProcess(static_cast<UINT>(Exception().Filter()));
}

struct Kind
{
    const char* name;
    void (*crash)();
};

constexpr Kind kinds[] = {
    {"read", Read},
    {"write", Write},
    {"execute", Execute},
    {"guard-page", ExecuteGuardPage},
    {"illegal", [] { asm volatile("ud1 %eax, %eax"); }},
    {"privileged", [] { asm volatile("hlt"); }},
    {"breakpoint", [] { asm volatile("int3"); }},
    {"divide", Divide},
    {"float-invalid", FloatInvalid},
    {"float-denormal", FloatDenormal},
    {"float-divide", FloatDivide},
    {"float-overflow", FloatOverflow},
    {"float-underflow", FloatUnderflow},
    {"float-inexact", FloatInexact},
    {"float-stack", FloatStack},
#ifndef _WIN64
    {"overflow", IntegerOverflow},
    {"bounds", ArrayBounds},
#endif
    {"stack-overflow", [] { s_sink = Recurse(0); }},
    {"overflow-in-heap", [] { s_sink = RecurseInHeap(0); }},
    {"overflow-in-loader", [] { s_sink = RecurseInLoader(0); }},
    {"destroyed-stack", DestroyStack},
    {"left-stack", LeaveStack},
    {"heap-exhausted", ExhaustHeap},
    {"bad-alloc", WantMemory},
    {"vectored-handler", InVectoredHandler},
    {"catch-block", InCatchBlock},
    {"two-threads", TwoThreads},
    {"second-thread", [] { WithASecondThread(CrashAsSecond); }},
    {"second-heap-lock", [] { WithASecondThread(CallFilterAsSecond<LockHeap>); }},
    {"second-loader-lock", [] { WithASecondThread(CallFilterAsSecond<LockLoader>); }},
    {"heap-lock", UnderHeapLock},
    {"loader-lock", UnderLoaderLock},
    {"log-hook", InLogHook},
    {"logger-folder-lock", UnderLoggersFolderLock},
    {"logger-file-lock", UnderLoggersFileLock},
    {"call-filter", CallFilter},
    {"error-modes", CallFilterForErrorModes},
    {"unreadable-stack", CallFilterWithAnUnreadableStack},
    {"creation", CallFilterForCreation},
    {"long-run", [] { CallFilterAfter(longRun); }},
    {"millisecond-run", [] { CallFilterAfter(millisecond); }},
    {"short-run", [] { CallFilterAfter(millisecond - 1); }},
    {"clock-set-back", [] { CallFilterAfter(-minute); }},
    {"old-system", CallFilterOnAnOldSystem},
};

} // namespace

void Crash(const std::string& kind)
{
    char marker[64] = {}; // is found on the stack
    std::memcpy(marker, "the marker that every crash leaves on its own stack", 51);
    volatile char* const onStack = marker;
    for (const Kind& known : kinds)
        if (kind == known.name) known.crash();
    if (kind.starts_with("0x"))
        RaiseException(static_cast<DWORD>(std::stoul(kind, nullptr, 16)), 0, 0, nullptr);
    s_sink = onStack[0];
}

} // namespace crash_test
