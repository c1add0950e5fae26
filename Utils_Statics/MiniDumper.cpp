#include "Utils_Statics/MiniDumper.h"

#include "diagnostics/CrashFiles.h"
#include "diagnostics/CrashReporter.h"
#include "diagnostics/FaultGuard.h"
#include "diagnostics/ReportSections.h"

#include <base/SpareStack.h>
#include <qor_utils/MemoryDumper.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelLogger.h>
#include <qor_utils/zelPath.h>

#include <xmmintrin.h>

#include <cfloat>

using namespace utils_statics;

namespace {

constexpr DWORD longestWait = 10'000; // milliseconds; for a second thread that crashes
constexpr SIZE_T stackSize = 256 * 1024;
// Bytes of the crashed thread's stack that the platform may need to end the process.
constexpr std::ptrdiff_t stackBehindFilter = 16 * 1024;
// Bytes of that stack that asking for a dump needs, and its lowest page, which must stay unused.
constexpr std::ptrdiff_t stackOfDump = 640 + 4 * 1024;
// Bytes of address space to release when the process crashes, because it may have none left.
constexpr SIZE_T addressReserve = 16 * 1024 * 1024;

constinit volatile LONG s_isPrepared = 0;
constinit volatile LONG s_isArmed = 1; // 0 from the process's first report on

// The state of the report that is being written. There is only one, outside any stack.
constinit EXCEPTION_POINTERS* s_exception = nullptr;
constinit std::uintptr_t s_stackBase = 0; // the crashed thread's
constinit DWORD s_crashedThread = 0;
constinit std::ptrdiff_t s_stackLeft = 0; // bytes of that stack
constinit HANDLE s_finished = nullptr;    // an event
constinit FixedText<MAX_PATH> s_logFolder;
constinit CrashFiles s_files = {};
constinit int s_dumpType = 0;
constinit bool s_hasReport = false;
constinit bool s_isReporterStarted = false;
constinit void* s_addressReserve = nullptr;

// PrepareCrashReport calls both first, so that nothing is constructed after a crash.
ReportText& Report() noexcept
{
    static ReportText report;
    return report;
}
base::SpareStack& Stack() noexcept
{
    static base::SpareStack stack(stackSize);
    return stack;
}

// Unloading the library would remove the code of the filter.
void KeepLibraryLoaded() noexcept
{
    HMODULE library = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&MiniDumper::TopLevelFilter), &library);
}

// Sets the log folder to the result of `look`; to nothing when that does not fit or memory is
// short.
template <class Look>
void SetLogFolder(Look look) noexcept
{
    FaultGuard::Run([&] {
        try {
            s_logFolder = look();
        } catch (...) {
            s_logFolder = L"";
        }
    });
    if (s_logFolder.IsCut()) s_logFolder = L"";
}

void FindLogFolder() noexcept
{
    SetLogFolder([] { return zelLogger::getCurrentDirectory(); });
    if (s_logFolder.View().empty())
        SetLogFolder([] { return zelPath::getPath(qor_utils::logStore, L""); });
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
    FindLogFolder();
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

void WriteReport() noexcept
{
    FaultGuard::Run(WriteReportFile);
}

// Runs on the crashed thread's own stack, because the dump must show it. The dumper needs hardly
// any of it. A guard would take more than an exhausted stack has.
void WriteDump() noexcept
{
    const auto write = [] {
        MemoryDumper::GenerateMiniDump(s_files.dump.Text(), s_exception, s_dumpType);
    };
    if (s_stackLeft > stackBehindFilter)
        FaultGuard::Run(write);
    else
        write();
}

void HandOverToReporter() noexcept
{
    if (!s_hasReport || IsDebuggerPresent()) return;
    FaultGuard::Run([] { WriteReporterSettings(s_files); });
    s_isReporterStarted = StartReporter(s_files);
}

// Ends the process here when the stack is exhausted, with the code that the platform would give.
// After the filter the platform might exhaust that stack again while it holds a lock.
void EndReport() noexcept
{
    FaultGuard::Run(HandOverToReporter);
    if (s_finished) SetEvent(s_finished);
    if (s_stackLeft <= stackBehindFilter)
        TerminateProcess(GetCurrentProcess(), s_exception->ExceptionRecord->ExceptionCode);
}

// The crashed thread may have floating-point exceptions unmasked. The next instruction would then
// raise again the one that it crashed with.
void MaskFloatingPoint() noexcept
{
    _fpreset();
    _mm_setcsr(_MM_MASK_MASK);
}

// The bytes between this frame and the end of the current stack.
std::ptrdiff_t StackLeft() noexcept
{
    const char here = 0;
    MEMORY_BASIC_INFORMATION stack = {};
    VirtualQuery(&here, &stack, sizeof stack);
    return &here - static_cast<char*>(stack.AllocationBase);
}

// The process ends as soon as the filter returns for any of its threads, so the first report gets
// some time. The wait is bounded, because that report may need a lock that this thread holds.
LONG WaitForReport() noexcept
{
    if (s_finished && GetCurrentThreadId() != s_crashedThread)
        WaitForSingleObject(s_finished, longestWait);
    return 0;
}

// Prepares everything that a report needs and that a crash may make unavailable. Only the process's
// first call does anything.
void PrepareCrashReport() noexcept
{
    if (InterlockedExchange(&s_isPrepared, 1) != 0) return;
    KeepLibraryLoaded();
    FaultGuard::Install();
    PrepareSystemDetails();
    Report();
    Stack();
    s_finished = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    s_addressReserve = VirtualAlloc(nullptr, addressReserve, MEM_RESERVE, PAGE_NOACCESS);
}

} // namespace

MiniDumper::MiniDumper() noexcept
{
    // The filter needs this reserve to run after this thread's stack has overflowed.
    ULONG spareStack = 64 * 1024;
    SetThreadStackGuarantee(&spareStack);
    PrepareCrashReport();
    SetUnhandledExceptionFilter(TopLevelFilter);
}

LONG WINAPI MiniDumper::TopLevelFilter(EXCEPTION_POINTERS* exception) noexcept
{
    SetErrorMode(SEM_NOGPFAULTERRORBOX);
    MaskFloatingPoint();
    if (InterlockedExchange(&s_isArmed, 0) == 0) return WaitForReport();
    s_crashedThread = GetCurrentThreadId();
    s_stackBase = reinterpret_cast<std::uintptr_t>(ThreadBlock().StackBase);
    s_exception = exception;
    s_stackLeft = StackLeft();
    PrepareCrashReport(); // for a caller of the filter that has made no MiniDumper
    if (s_addressReserve) VirtualFree(s_addressReserve, 0, MEM_RELEASE);
    // Everything but the dump runs on the other stack. Some platforms leave a filter only half a
    // kilobyte of an exhausted stack, so no frame lies between this one and the switch.
    const base::FiberScope fiber;
    Stack().Run(WriteReport);
    if (s_hasReport && s_stackLeft > stackOfDump)
        WriteDump();
    else if (s_hasReport)
        Stack().Run(WriteDump); // the dump then shows that stack, and still the exception
    Stack().Run(EndReport);
    return s_isReporterStarted ? 1 : 0;
}
