#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

/// The crash handler. The application constructs one at its start. When the process later dies of
/// an unhandled exception, the handler writes a report, a memory dump and the settings for the
/// crash reporter, and starts the reporter. docs/formats/crash-report.md describes the files.
///
/// The constructor prepares everything that a crash needs, because little can be relied on
/// afterwards: above all a second stack, on which the crashed thread writes the report. The library
/// cannot be unloaded any more.
class UTILS_STATICS_API MiniDumper
{
public:
    /// Makes TopLevelFilter the process's filter of unhandled exceptions. Any number of objects may
    /// be constructed, copied and destroyed; the filter stays.
    ///
    /// The constructing thread gets a reserve of stack for the filter (SetThreadStackGuarantee).
    /// Any other thread has to reserve it itself if an overflow of its stack is to be reported:
    /// without the reserve the platform may end the thread before any filter runs.
    MiniDumper() noexcept;

    /// Writes the report of the first unhandled exception of the process, on the thread it occurred
    /// on, and starts the reporter. 1 when the reporter was started. 0 when no report file can be
    /// created, a debugger is attached, or there is no reporter. Raises no exception. When the
    /// thread has hardly any stack left (16 KB), the call does not return: it ends the process with
    /// the exception's code.
    ///
    /// Later calls return 0 at once. Only a call on another thread, while the report is being
    /// written, first waits for it for at most ten seconds, because the process ends when the call
    /// returns.
    static LONG WINAPI TopLevelFilter(EXCEPTION_POINTERS* exception) noexcept;
};
