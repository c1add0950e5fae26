#include "qor_utils/MemoryDumper.h"

#include <base/Handles.h>
#include <base/SpareStack.h>

#include <cwchar>
#include <iterator>

// NOLINTNEXTLINE(readability-identifier-naming): the linker's name for the module of this code
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

constexpr DWORD dumpTimeout = 120'000; // milliseconds; for a dump with all memory on a slow disk
constexpr DWORD endTimeout = 10'000;   // for a writer that was terminated
constexpr SIZE_T stackSize = 128 * 1024;
constexpr wchar_t writerName[] = L"dumpwriter.exe";

// The dump that is being written. There is only one, outside any stack.
struct Job
{
    volatile LONG inUse;
    const wchar_t* path;
    EXCEPTION_POINTERS* exception;
    int type;
    DWORD thread;
    wchar_t program[1024];
    wchar_t command[3072];
    PROCESS_INFORMATION writer; // without a process if it could not be started
    bool isWritten;
};
constinit Job s_job{};

// The caller may have crashed because it had no stack left, so this one is made when the library is
// loaded.
base::SpareStack s_spareStack(stackSize);

// Looks for the writer beside this library.
bool FindWriter()
{
    constexpr DWORD room = std::size(s_job.program) - std::size(writerName);
    const DWORD length =
        GetModuleFileNameW(reinterpret_cast<HMODULE>(&__ImageBase), s_job.program, room);
    wchar_t* const name =
        length > 0 && length < room ? std::wcsrchr(s_job.program, L'\\') : nullptr;
    if (name) std::wcscpy(name + 1, writerName);
    return name != nullptr;
}

// The writer's main.cpp defines the meaning of the words.
bool FormCommand()
{
    const int length = _snwprintf(
        s_job.command, std::size(s_job.command), L"\"%ls\" %lx %lx %Ix %x \"%ls\"", s_job.program,
        GetCurrentProcessId(), s_job.thread, reinterpret_cast<ULONG_PTR>(s_job.exception),
        static_cast<unsigned>(s_job.type), s_job.path);
    return length > 0 && length < static_cast<int>(std::size(s_job.command));
}

// The writer starts suspended, because the caller first returns to its own stack, which the dump
// must show.
void StartWriter()
{
    s_job.writer = {};
    s_job.isWritten = false;
    if (!FindWriter() || !FormCommand()) return;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    CreateProcessW(s_job.program, s_job.command, nullptr, nullptr, FALSE,
                   CREATE_NO_WINDOW | CREATE_SUSPENDED, nullptr, nullptr, &startup, &s_job.writer);
}

// Runs on the caller's stack, of which hardly anything may be left.
void WaitForWriter()
{
    constexpr DWORD refused = 0xFFFFFFFF;
    if (ResumeThread(s_job.writer.hThread) != refused)
        WaitForSingleObject(s_job.writer.hProcess, dumpTimeout);
}

// A writer that has not finished is terminated, and its file is deleted.
void EndWriter()
{
    const base::Process writer(s_job.writer.hProcess);
    const base::Thread thread(s_job.writer.hThread);
    DWORD status = 1;
    GetExitCodeProcess(writer.get(), &status);
    s_job.isWritten = status == 0;
    if (status != STILL_ACTIVE) return;
    TerminateProcess(writer.get(), 1);
    WaitForSingleObject(writer.get(), endTimeout);
    DeleteFileW(s_job.path);
}

void RunJob()
{
    s_spareStack.Run(StartWriter);
    if (!s_job.writer.hProcess) return;
    WaitForWriter();
    s_spareStack.Run(EndWriter);
}

} // namespace

bool MemoryDumper::GenerateMiniDump(const wchar_t* path, EXCEPTION_POINTERS* exception,
                                    int dumpType) noexcept
{
    if (!path || InterlockedExchange(&s_job.inUse, 1) != 0) return false;
    s_job.path = path;
    s_job.exception = exception;
    s_job.type = dumpType;
    s_job.thread = GetCurrentThreadId();
    RunJob();
    const bool isWritten = s_job.isWritten;
    InterlockedExchange(&s_job.inUse, 0);
    return isWritten;
}
