#include "diagnostics/CrashReport.h"

#include "diagnostics/CrashFiles.h"
#include "diagnostics/CrashReporter.h"
#include "diagnostics/CrashSettings.h"
#include "diagnostics/FaultGuard.h"
#include "diagnostics/ReadyThread.h"
#include "diagnostics/ReportSections.h"
#include "diagnostics/ThreadBlock.h"

#include <qor_utils/MemoryDumper.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelLogger.h>
#include <qor_utils/zelPath.h>

#include <cfloat>
#include <xmmintrin.h>

namespace utils_statics {

namespace {

constexpr DWORD lookupTimeout = 2'000;   // milliseconds; of what another thread may hold up
constexpr DWORD reportTimeout = 300'000; // a dump of all memory on a slow disk included
// What a report may need of the crashed thread's stack, with a good margin for the platform.
constexpr std::uintptr_t neededStack = 128 * 1024;
// Addresses that are given back when the process crashes, because it may have none left.
constexpr SIZE_T addressReserve = 16 * 1024 * 1024;

constinit volatile LONG s_isPrepared = 0;
constinit volatile LONG s_isArmed = 1; // until the process's first report

// Of the report that is being written. There is one, outside any stack.
constinit EXCEPTION_POINTERS* s_exception = nullptr;
constinit std::uintptr_t s_stackBase = 0; // of the crashed thread
constinit DWORD s_crashedThread = 0;
constinit HANDLE s_finished = nullptr; // an event
constinit CrashFiles s_files = {};
constinit int s_dumpType = 0;
constinit bool s_hasReport = false;
constinit bool s_isReporterStarted = false;

// The log folder as it was last known, and what the thread that looks it up has found.
constinit FixedText<MAX_PATH> s_logFolder;
constinit FixedText<MAX_PATH> s_foundFolder;

constinit ReadyThread s_lookupThread;
constinit ReadyThread s_reportThread;
constinit void* s_addressReserve = nullptr;

// First used when the handler is made ready.
ReportText& Report() noexcept
{
    static ReportText report;
    return report;
}

// Takes locks of the logger, and memory.
void LookUpLogFolder() noexcept
{
    try {
        std::wstring folder = zelLogger::getCurrentDirectory();
        if (folder.empty() || folder.size() > FixedText<MAX_PATH>::capacity)
            folder = zelPath::getPath(qor_utils::logStore, L"");
        s_foundFolder = folder;
    } catch (...) { // out of memory: what was known last has to do
        s_foundFolder = s_logFolder.View();
    }
}

// The code that the filter and the waiting threads run must not go away.
void KeepLibraryLoaded() noexcept
{
    HMODULE library = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&WriteCrashReport), &library);
}

void WriteText(ReportText& report) noexcept
{
    const EXCEPTION_POINTERS& exception = *s_exception;
    const CONTEXT& context = *exception.ContextRecord;
    const auto part = [](auto write) { FaultGuard::Run(write); };
    part([&] { WriteExceptionCause(report, s_files, exception); });
    part([&] { WriteProcessTimes(report); });
    part([&] { WriteAccessViolation(report, *exception.ExceptionRecord); });
    part([&] { WriteSystemDetails(report, s_files); });
    part([&] { WriteRegisters(report, context); });
    part([&] { WriteCodeBytes(report, context); });
    part([&] { WriteStack(report, context, s_stackBase); });
    part([&] { WriteModules(report); });
    report.Write(L"\r\n===== [end of %s.log] =====\r\n", s_files.baseName.Text());
}

void WriteReportFile() noexcept
{
    FindCrashFiles(s_files, s_logFolder.View());
    s_dumpType = CrashSettingNumber(L"System\\HW Options", L"DumpType", 0);
    ReportText& report = Report();
    s_hasReport = report.Open(s_files.report.Text());
    if (!s_hasReport) {
        OutputDebugStringW(L"Error creating exception report\r\n");
        return;
    }
    WriteText(report);
    report.Close();
}

void HandOverToReporter() noexcept
{
    FaultGuard::Run([] { WriteReporterSettings(s_files); });
    s_isReporterStarted = StartReporter(s_files);
}

// The crashed thread may let floating-point exceptions through, and the next instruction would
// raise again what it crashed of.
void MaskFloatingPoint() noexcept
{
    _fpreset();
    _mm_setcsr(_MM_MASK_MASK);
}

std::uintptr_t AllocationOf(std::uintptr_t address) noexcept
{
    MEMORY_BASIC_INFORMATION region = {};
    VirtualQuery(reinterpret_cast<void*>(address), &region, sizeof region);
    return reinterpret_cast<std::uintptr_t>(region.AllocationBase);
}

// Whether the current thread is on its own stack and has enough of it for anything.
bool HasStack() noexcept
{
    const char here = 0;
    const auto address = reinterpret_cast<std::uintptr_t>(&here);
    const std::uintptr_t stack = AllocationOf(address);
    return stack == AllocationOf(s_stackBase - 1) && address - stack > neededStack;
}

// On the crashed thread, which may hold locks that it can take again, but no other; only where it
// has no stack left, on the thread that was made ready.
void RunWhereThereIsStack(void (*work)()) noexcept
{
    if (HasStack())
        FaultGuard::Run(work);
    else
        s_reportThread.Run(work, reportTimeout);
}

// The dump records the thread that asks for it, so it is asked for by the crashed one. That needs
// little stack; the dumper has a thread of its own.
void WriteDump() noexcept
{
    FaultGuard::Run(
        [] { MemoryDumper::GenerateMiniDump(s_files.dump.Text(), s_exception, s_dumpType); });
}

void WriteEverything() noexcept
{
    if (s_addressReserve) VirtualFree(s_addressReserve, 0, MEM_RELEASE);
    if (s_lookupThread.Run(LookUpLogFolder, lookupTimeout)) s_logFolder = s_foundFolder.View();
    RunWhereThereIsStack(WriteReportFile);
    if (!s_hasReport) return;
    WriteDump();
    if (!IsDebuggerPresent()) RunWhereThereIsStack(HandOverToReporter);
}

// The process ends as soon as the filter returns for any of its threads.
LONG WaitForReport() noexcept
{
    if (s_finished && GetCurrentThreadId() != s_crashedThread)
        WaitForSingleObject(s_finished, reportTimeout);
    return 0;
}

} // namespace

void PrepareCrashReport() noexcept
{
    if (InterlockedExchange(&s_isPrepared, 1) != 0) return;
    KeepLibraryLoaded();
    FaultGuard::Install();
    PrepareSystemDetails();
    MemoryDumper::GenerateMiniDump(L"", nullptr, 0); // makes ready what a dump needs
    Report();
    LookUpLogFolder();
    s_logFolder = s_foundFolder.View();
    s_finished = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    s_lookupThread.Start();
    s_reportThread.Start();
    s_addressReserve = VirtualAlloc(nullptr, addressReserve, MEM_RESERVE, PAGE_NOACCESS);
}

LONG WriteCrashReport(EXCEPTION_POINTERS* exception) noexcept
{
    SetErrorMode(SEM_NOGPFAULTERRORBOX);
    MaskFloatingPoint();
    if (InterlockedExchange(&s_isArmed, 0) == 0) return WaitForReport();
    s_crashedThread = GetCurrentThreadId();
    s_stackBase = reinterpret_cast<std::uintptr_t>(ThreadBlock().StackBase);
    s_exception = exception;
    PrepareCrashReport(); // for whoever calls the filter without having made a MiniDumper
    FaultGuard::Run(WriteEverything);
    if (s_finished) SetEvent(s_finished);
    return s_isReporterStarted ? 1 : 0;
}

} // namespace utils_statics
