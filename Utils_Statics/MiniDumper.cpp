#include "Utils_Statics/MiniDumper.h"

#include "diagnostics/CrashReport.h"

MiniDumper::MiniDumper() noexcept
{
    // The filter needs this reserve to run after this thread's stack has overflowed.
    ULONG spareStack = 64 * 1024;
    SetThreadStackGuarantee(&spareStack);
    utils_statics::PrepareCrashReport();
    SetUnhandledExceptionFilter(TopLevelFilter);
}

LONG WINAPI MiniDumper::TopLevelFilter(EXCEPTION_POINTERS* exception) noexcept
{
    return utils_statics::WriteCrashReport(exception);
}
