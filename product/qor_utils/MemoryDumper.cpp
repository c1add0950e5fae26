#include "qor_utils/MemoryDumper.h"

#include <dbghelp.h>

#include <cwchar>
#include <iterator>

namespace {

constexpr DWORD startTimeout = 2'000;  // milliseconds
constexpr DWORD dumpTimeout = 120'000; // of a dump with all memory on a slow disk

constexpr int knownTypes = MiniDumpValidTypeFlags; // a value beyond the enumeration is undefined

using WriteDump = decltype(&MiniDumpWriteDump);

// Everything a dump needs. There is one, outside any stack: when a dump hangs, its caller goes on,
// and the thread that hangs must not be left with pointers into a stack that has moved on.
struct Job
{
    volatile LONG inUse;
    volatile LONG claimed; // by the thread that will write
    wchar_t path[1024];
    MINIDUMP_EXCEPTION_INFORMATION exception;
    MINIDUMP_TYPE type;
    HANDLE started;
    HANDLE finished;
    bool written;
};

constinit Job job{};

// From the system's folder only: a crash must not run what lies about in the program's.
WriteDump loadWriteDump()
{
    wchar_t path[MAX_PATH + 16];
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return nullptr;
    std::wcscpy(path + length, L"\\dbghelp.dll");
    const HMODULE library = LoadLibraryW(path); // stays loaded: the process is about to end anyway
    if (!library) return nullptr;
    return reinterpret_cast<WriteDump>(
        reinterpret_cast<void*>(GetProcAddress(library, "MiniDumpWriteDump")));
}

bool writeDump(WriteDump function, HANDLE file, MINIDUMP_TYPE type)
{
    auto* const exception = job.exception.ExceptionPointers ? &job.exception : nullptr;
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    SetEndOfFile(file);
    return function(GetCurrentProcess(), GetCurrentProcessId(), file, type, exception, nullptr,
                    nullptr) != FALSE;
}

void runJob()
{
    const WriteDump function = loadWriteDump();
    if (!function) return;
    const HANDLE file = CreateFileW(job.path, GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    job.written = writeDump(function, file, job.type) ||
                  (job.type != MiniDumpNormal && writeDump(function, file, MiniDumpNormal));
    CloseHandle(file);
    if (!job.written) DeleteFileW(job.path);
}

// True for one of the threads that ask.
bool claimJob()
{
    return InterlockedExchange(&job.claimed, 1) == 0;
}

DWORD WINAPI dumpThread(void*)
{
    if (claimJob()) {
        SetEvent(job.started);
        runJob();
        SetEvent(job.finished);
    }
    return 0;
}

// False when the thread still runs after its time. A thread cannot begin while the crashed one
// holds the loader's lock; the caller then does the work itself.
bool runJobOnThread()
{
    const HANDLE thread = CreateThread(nullptr, 0, dumpThread, nullptr, 0, nullptr);
    const bool begun = thread && WaitForSingleObject(job.started, startTimeout) == WAIT_OBJECT_0;
    if (thread) CloseHandle(thread);
    if (!begun && claimJob()) {
        runJob();
        return true;
    }
    return WaitForSingleObject(job.finished, dumpTimeout) == WAIT_OBJECT_0;
}

bool prepareJob(const wchar_t* path, EXCEPTION_POINTERS* exception, int dumpType)
{
    if (wcsnlen(path, std::size(job.path)) >= std::size(job.path)) return false;
    std::wcscpy(job.path, path);
    job.exception = {GetCurrentThreadId(), exception, FALSE};
    job.type = static_cast<MINIDUMP_TYPE>(dumpType & knownTypes);
    job.written = false;
    job.started = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    job.finished = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    InterlockedExchange(
        &job.claimed,
        0); // last: a thread of an earlier job that only now begins may claim this one
    return job.started && job.finished;
}

void closeEvents()
{
    if (job.started) CloseHandle(job.started);
    if (job.finished) CloseHandle(job.finished);
    job.started = job.finished = nullptr;
}

} // namespace

bool MemoryDumper::GenerateMiniDump(const wchar_t* path, EXCEPTION_POINTERS* exception,
                                    int dumpType) noexcept
{
    if (!path || !*path) return false;
    if (InterlockedExchange(&job.inUse, 1) != 0) return false;
    const bool prepared = prepareJob(path, exception, dumpType);
    if (prepared && !runJobOnThread())
        return false; // the job stays in use, for the thread that hangs
    const bool written = prepared && job.written;
    closeEvents();
    InterlockedExchange(&job.inUse, 0);
    return written;
}
