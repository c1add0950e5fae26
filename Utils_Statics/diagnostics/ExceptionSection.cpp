// The section on the exception's cause and place.
#include "diagnostics/FaultGuard.h"
#include "diagnostics/ReportSections.h"

namespace utils_statics {

namespace {

struct NamedException
{
    DWORD code;
    const wchar_t* text;
};

// People and programs search reports for these texts, "a Array" included.
constexpr NamedException exceptions[] = {
    {0x40010005, L"a Control-C"},
    {0x40010008, L"a Control-Break"},
    {0x80000002, L"a Datatype Misalignment"},
    {0x80000003, L"a Breakpoint"},
    {0xC0000005, L"an Access Violation"},
    {0xC0000006, L"an In Page Error"},
    {0xC0000017, L"a No Memory"},
    {0xC000001D, L"an Illegal Instruction"},
    {0xC0000025, L"a Noncontinuable Exception"},
    {0xC0000026, L"an Invalid Disposition"},
    {0xC000008C, L"a Array Bounds Exceeded"},
    {0xC000008D, L"a Float Denormal Operand"},
    {0xC000008E, L"a Float Divide by Zero"},
    {0xC000008F, L"a Float Inexact Result"},
    {0xC0000090, L"a Float Invalid Operation"},
    {0xC0000091, L"a Float Overflow"},
    {0xC0000092, L"a Float Stack Check"},
    {0xC0000093, L"a Float Underflow"},
    {0xC0000094, L"an Integer Divide by Zero"},
    {0xC0000095, L"an Integer Overflow"},
    {0xC0000096, L"a Privileged Instruction"},
    {0xC00000FD, L"a Stack Overflow"},
    {0xC0000142, L"a DLL Initialization Failed"},
    {0xE06D7363, L"a Microsoft C++ Exception"},
};

// The file name of the module whose memory has an address.
void FindModuleOf(std::uintptr_t address, FixedText<1024>& name) noexcept
{
    FixedText<1024> path;
    MEMORY_BASIC_INFORMATION region = {};
    name = L"Unknown";
    if (!VirtualQuery(reinterpret_cast<void*>(address), &region, sizeof region) ||
        !region.AllocationBase ||
        !GetModuleFileNameW(static_cast<HMODULE>(region.AllocationBase), path.data(),
                            FixedText<1024>::capacity))
        return;
    path.Measure();
    name = FileNamePart(path.View());
}

} // namespace

const wchar_t* ExceptionText(DWORD code) noexcept
{
    for (const NamedException& exception : exceptions)
        if (exception.code == code) return exception.text;
    return L"an Unknown exception type";
}

void WriteExceptionCause(ReportText& report, const CrashFiles& files,
                         const EXCEPTION_POINTERS& exception) noexcept
{
    const DWORD code = exception.ExceptionRecord->ExceptionCode;
    const CONTEXT& context = *exception.ContextRecord;
    FixedText<1024> module;
    FindModuleOf(context.*codeAddress, module);
    report.Write(L"%s caused %s (0x%08x) \r\nin module %s at %04x:" ADDRESS_FORMAT L".\r\n\r\n",
                 files.processName.Text(), ExceptionText(code), code, module.Text(),
                 static_cast<unsigned>(LOWORD(context.SegCs)), context.*codeAddress);
}

void WriteAccessViolation(ReportText& report, const EXCEPTION_RECORD& record) noexcept
{
    if (record.ExceptionCode != STATUS_ACCESS_VIOLATION || record.NumberParameters < 2) return;
    report.Write(L"%s location " ADDRESS_FORMAT L" caused an access violation.\r\n",
                 record.ExceptionInformation[0] ? L"Write to" : L"Read from",
                 record.ExceptionInformation[1]);
    report.Write(L"\r\n");
}

} // namespace utils_statics
