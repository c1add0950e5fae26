// The section on the exception's cause and place.
#include "diagnostics/CrashRegisters.h"
#include "diagnostics/ExceptionText.h"
#include "diagnostics/ReportSections.h"

namespace utils_statics {

namespace {

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

void WriteExceptionCause(ReportText& report, const CrashFiles& files,
                         const EXCEPTION_POINTERS& exception) noexcept
{
    const DWORD code = exception.ExceptionRecord->ExceptionCode;
    const CONTEXT& context = *exception.ContextRecord;
    FixedText<1024> module;
    FindModuleOf(CodeAddress(context), module);
    report.Write(L"%s caused %s (0x%08x) \r\nin module %s at %04x:" ADDRESS_FORMAT L".\r\n\r\n",
                 files.processName.Text(), ExceptionText(code), code, module.Text(),
                 static_cast<unsigned>(LOWORD(context.SegCs)), CodeAddress(context));
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
