#include "qor_utils/MemoryDumper.h"

#include "DumpFunction.h"
#include "DumpProcess.h"

#include <base/Handles.h>

#include <cwchar>
#include <iterator>

namespace {

constexpr DWORD startTimeout = 2'000;  // milliseconds
constexpr DWORD dumpTimeout = 120'000; // of a dump with all memory on a slow disk

constexpr int knownTypes = MiniDumpValidTypeFlags; // a value beyond the enumeration is undefined

using qor_utils::DumpFunction;

// Everything a dump needs. There is one, outside any stack: when a dump hangs, its caller goes on,
// and the thread that hangs must not be left with pointers into a stack that has moved on.
struct Job
{
    volatile LONG inUse;
    volatile LONG claimed; // by the thread that will write
    wchar_t path[1024];
    MINIDUMP_EXCEPTION_INFORMATION exception;
    MINIDUMP_TYPE type;
    HANDLE started; // this and the next: events of the call under way
    HANDLE finished;
    bool written;
};

constinit Job s_job{};

bool WriteDump(DumpFunction function, HANDLE file, MINIDUMP_TYPE type)
{
    auto* const exception = s_job.exception.ExceptionPointers ? &s_job.exception : nullptr;
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    SetEndOfFile(file);
    return function(GetCurrentProcess(), GetCurrentProcessId(), file, type, exception, nullptr,
                    nullptr) != FALSE;
}

void RunJob(DumpFunction function)
{
    if (!function) return;
    base::File file(CreateFileW(s_job.path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return;
    s_job.written =
        WriteDump(function, file.get(), s_job.type) ||
        (s_job.type != MiniDumpNormal && WriteDump(function, file.get(), MiniDumpNormal));
    file.reset(); // an open file cannot be deleted
    if (!s_job.written) DeleteFileW(s_job.path);
}

// True for one of the threads that ask.
bool ClaimJob()
{
    return InterlockedExchange(&s_job.claimed, 1) == 0;
}

// Loads before it claims: whoever gets through has seen that the loader's lock is free, which the
// dump needs as well.
DWORD WINAPI DumpThread(void*)
{
    const DumpFunction function = qor_utils::LoadDumpFunction();
    if (ClaimJob()) {
        SetEvent(s_job.started);
        RunJob(function);
        SetEvent(s_job.finished);
    }
    return 0;
}

// False when the thread still runs after its time. While the crashed thread holds the loader's lock
// another cannot begin, or cannot load, and DbgHelp itself may wait for one: then a process of its
// own does the work.
bool RunJobOnThread()
{
    const base::Thread thread(CreateThread(nullptr, 0, DumpThread, nullptr, 0, nullptr));
    const bool begun = thread && WaitForSingleObject(s_job.started, startTimeout) == WAIT_OBJECT_0;
    if (!begun && ClaimJob()) {
        s_job.written =
            qor_utils::WriteDumpFromOutside(s_job.path, s_job.exception, s_job.type, dumpTimeout);
        return true;
    }
    return WaitForSingleObject(s_job.finished, dumpTimeout) == WAIT_OBJECT_0;
}

bool PrepareJob(const wchar_t* path, EXCEPTION_POINTERS* exception, int dumpType,
                const base::Event& started, const base::Event& finished)
{
    if (wcsnlen(path, std::size(s_job.path)) >= std::size(s_job.path)) return false;
    std::wcscpy(s_job.path, path);
    s_job.exception = {GetCurrentThreadId(), exception, FALSE};
    s_job.type = static_cast<MINIDUMP_TYPE>(dumpType & knownTypes);
    s_job.written = false;
    s_job.started = started.get();
    s_job.finished = finished.get();
    InterlockedExchange(
        &s_job.claimed,
        0); // last: a thread of an earlier job that only now begins may claim this one
    return started && finished;
}

base::Event NewEvent()
{
    return base::Event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

} // namespace

bool MemoryDumper::GenerateMiniDump(const wchar_t* path, EXCEPTION_POINTERS* exception,
                                    int dumpType) noexcept
{
    if (!path || !*path) return false;
    if (InterlockedExchange(&s_job.inUse, 1) != 0) return false;
    base::Event started = NewEvent();
    base::Event finished = NewEvent();
    const bool prepared = PrepareJob(path, exception, dumpType, started, finished);
    if (prepared && !RunJobOnThread()) {
        // The job and its events stay, for the thread that hangs.
        started.release();
        finished.release();
        return false;
    }
    const bool written = prepared && s_job.written;
    InterlockedExchange(&s_job.inUse, 0);
    return written;
}
