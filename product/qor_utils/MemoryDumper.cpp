#include "qor_utils/MemoryDumper.h"

#include "DumpLibrary.h"
#include "DumpProcess.h"

#include <base/Handles.h>

#include <cwchar>
#include <iterator>

namespace {

constexpr DWORD beginTimeout = 1'000;  // milliseconds; of the thread itself
constexpr DWORD startTimeout = 2'000;  // of a dump
constexpr DWORD dumpTimeout = 120'000; // of a dump with all memory on a slow disk

constexpr int knownTypes = MiniDumpValidTypeFlags; // a value beyond the enumeration is undefined

using qor_utils::DumpLibrary;

// Everything a dump needs. There is one, outside any stack: when a dump hangs, its caller goes on,
// and the thread that hangs must not be left with pointers into a stack that has moved on.
struct Job
{
    volatile LONG inUse;
    volatile LONG claimed; // by whoever will write
    wchar_t path[1024];
    MINIDUMP_EXCEPTION_INFORMATION exception;
    MINIDUMP_TYPE type;
    HANDLE file;    // while the thread writes
    bool abandoned; // DbgHelp crashed
    bool written;
};

constinit Job s_job{};

// The thread that writes, made once: a crashed process may not be able to make one. Its events and
// itself stay.
struct Writer
{
    DWORD thread;
    HANDLE running; // these four: events
    HANDLE asked;
    HANDLE started;
    HANDLE finished;
    bool ready;
};

constinit Writer s_writer{};

void RunJob(const DumpLibrary& library)
{
    if (!library) return;
    base::File file(CreateFileW(s_job.path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return;
    s_job.file = file.get();
    s_job.written = library.Write(file.get(), GetCurrentProcess(), GetCurrentProcessId(),
                                  s_job.exception, s_job.type);
    file.reset(); // an open file cannot be deleted
    if (!s_job.written) DeleteFileW(s_job.path);
}

// Receives the crashes of the thread that writes, while it does: DbgHelp does not survive an
// exhausted heap everywhere. The process's own filter would wait for the dump.
class WriterFilter
{
public:
    WriterFilter() { s_before = SetUnhandledExceptionFilter(&Filter); }
    ~WriterFilter() { SetUnhandledExceptionFilter(s_before); }
    WriterFilter(const WriterFilter&) = delete;
    WriterFilter& operator=(const WriterFilter&) = delete;

private:
    static LONG WINAPI Filter(EXCEPTION_POINTERS* exception)
    {
        if (GetCurrentThreadId() != s_writer.thread)
            return s_before ? s_before(exception) : EXCEPTION_CONTINUE_SEARCH;
        base::File(s_job.file).reset(); // for whoever writes next
        s_job.abandoned = true;
        SetEvent(s_writer.finished);
        for (;;) // it may hold locks of DbgHelp, so it can never write again
            Sleep(INFINITE);
    }

    static constinit inline LPTOP_LEVEL_EXCEPTION_FILTER s_before = nullptr;
};

// True for one of the threads that ask.
bool ClaimJob()
{
    return InterlockedExchange(&s_job.claimed, 1) == 0;
}

// The crashed thread may hold these locks, which a dump needs as well. Whoever returns has seen
// that they are free; whoever waits for the heap's holds none, above all not the loader's.
DumpLibrary WaitForLocks()
{
    if (HeapLock(GetProcessHeap())) HeapUnlock(GetProcessHeap());
    return {};
}

DWORD WINAPI DumpThread(void*)
{
    SetEvent(s_writer.running);
    for (;;) {
        WaitForSingleObject(s_writer.asked, INFINITE);
        const DumpLibrary library = WaitForLocks();
        if (!ClaimJob()) continue;
        SetEvent(s_writer.started);
        RunJob(library);
        SetEvent(s_writer.finished);
    }
}

HANDLE NewEvent(BOOL manualReset)
{
    return CreateEventW(nullptr, manualReset, FALSE, nullptr);
}

// The thread's code must not go away.
void KeepLibraryLoaded()
{
    HMODULE library = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<const wchar_t*>(&DumpThread), &library);
}

bool HasEvents()
{
    if (!s_writer.running) s_writer.running = NewEvent(TRUE);
    if (!s_writer.asked) s_writer.asked = NewEvent(FALSE);
    if (!s_writer.started) s_writer.started = NewEvent(TRUE);
    if (!s_writer.finished) s_writer.finished = NewEvent(TRUE);
    return s_writer.running && s_writer.asked && s_writer.started && s_writer.finished;
}

// Called by whoever has the job. Once it has succeeded it does nothing. The thread is waited for,
// because one that only begins could still be held up by the loader's lock.
void MakeReady()
{
    if (s_writer.ready) return;
    KeepLibraryLoaded();
    const DumpLibrary staysLoaded;
    if (!HasEvents()) return;
    const base::Thread thread(CreateThread(nullptr, 0, DumpThread, nullptr, 0, &s_writer.thread));
    s_writer.ready = static_cast<bool>(thread);
    if (s_writer.ready) WaitForSingleObject(s_writer.running, beginTimeout);
}

// Whether the thread has begun. It has not while the crashed thread holds a lock that it needs.
bool AskThread()
{
    if (!s_writer.ready) return false;
    ResetEvent(s_writer.started);
    ResetEvent(s_writer.finished);
    // From here on a thread that waited for an earlier job's locks may claim this one.
    InterlockedExchange(&s_job.claimed, 0);
    SetEvent(s_writer.asked);
    return WaitForSingleObject(s_writer.started, startTimeout) == WAIT_OBJECT_0 || !ClaimJob();
}

// False when the thread still runs after its time. Where it cannot begin, or crashes, a process of
// its own does the work.
bool RunPreparedJob()
{
    const WriterFilter filter;
    if (AskThread()) {
        if (WaitForSingleObject(s_writer.finished, dumpTimeout) != WAIT_OBJECT_0) return false;
        if (!s_job.abandoned) return true;
    }
    s_job.written =
        qor_utils::WriteDumpFromOutside(s_job.path, s_job.exception, s_job.type, dumpTimeout);
    return true;
}

bool PrepareJob(const wchar_t* path, EXCEPTION_POINTERS* exception, int dumpType)
{
    if (wcsnlen(path, std::size(s_job.path)) >= std::size(s_job.path)) return false;
    std::wcscpy(s_job.path, path);
    s_job.exception = {GetCurrentThreadId(), exception, FALSE};
    s_job.type = static_cast<MINIDUMP_TYPE>(dumpType & knownTypes);
    s_job.abandoned = false;
    s_job.written = false;
    return true;
}

} // namespace

bool MemoryDumper::GenerateMiniDump(const wchar_t* path, EXCEPTION_POINTERS* exception,
                                    int dumpType) noexcept
{
    if (!path) return false;
    if (InterlockedExchange(&s_job.inUse, 1) != 0) return false;
    MakeReady();
    const bool prepared = *path && PrepareJob(path, exception, dumpType);
    if (prepared && !RunPreparedJob()) return false; // the job stays, for the thread that hangs
    const bool written = prepared && s_job.written;
    InterlockedExchange(&s_job.inUse, 0);
    return written;
}
