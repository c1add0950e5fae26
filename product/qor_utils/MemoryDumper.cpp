#include "qor_utils/MemoryDumper.h"

#include "DumpFunction.h"
#include "DumpProcess.h"

#include <cwchar>
#include <iterator>

namespace {

constexpr DWORD startTimeout = 2'000;  // milliseconds
constexpr DWORD dumpTimeout = 120'000; // of a dump with all memory on a slow disk

constexpr int knownTypes = MiniDumpValidTypeFlags; // a value beyond the enumeration is undefined

using qor_utils::WriteDump;

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

bool writeDump(WriteDump function, HANDLE file, MINIDUMP_TYPE type)
{
    auto* const exception = job.exception.ExceptionPointers ? &job.exception : nullptr;
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    SetEndOfFile(file);
    return function(GetCurrentProcess(), GetCurrentProcessId(), file, type, exception, nullptr,
                    nullptr) != FALSE;
}

void runJob(WriteDump function)
{
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

// Loads before it claims: whoever gets through has seen that the loader's lock is free, which the
// dump needs as well.
DWORD WINAPI dumpThread(void*)
{
    const WriteDump function = qor_utils::LoadWriteDump();
    if (claimJob()) {
        SetEvent(job.started);
        runJob(function);
        SetEvent(job.finished);
    }
    return 0;
}

// False when the thread still runs after its time. While the crashed thread holds the loader's lock
// another cannot begin, or cannot load, and DbgHelp itself may wait for one: then a process of its
// own does the work.
bool runJobOnThread()
{
    const HANDLE thread = CreateThread(nullptr, 0, dumpThread, nullptr, 0, nullptr);
    const bool begun = thread && WaitForSingleObject(job.started, startTimeout) == WAIT_OBJECT_0;
    if (thread) CloseHandle(thread);
    if (!begun && claimJob()) {
        job.written =
            qor_utils::WriteDumpFromOutside(job.path, job.exception, job.type, dumpTimeout);
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
