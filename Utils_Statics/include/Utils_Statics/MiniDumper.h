#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

/// The crash handler. The application constructs one at its start; from then on, when the process
/// dies of an exception that nobody handles, a report, a memory dump and the settings for the crash
/// reporter are written, and the reporter is started. docs/formats/crash-report.md describes the
/// files.
///
/// What a crash needs is made ready here, because little can be relied on afterwards: above all a
/// second stack, on which the crashed thread writes the report. The library cannot be unloaded any
/// more.
class UTILS_STATICS_API MiniDumper
{
public:
    /// Makes TopLevelFilter the process's filter of unhandled exceptions. Any number may be
    /// constructed, copied and destroyed; the filter stays.
    ///
    /// The constructing thread gets a reserve of stack for the filter (SetThreadStackGuarantee).
    /// Another thread whose exhausted stack is to be reported has to get one itself: without it the
    /// platform may end a thread before any filter runs.
    MiniDumper() noexcept;

    /// Writes the report of the first unhandled exception of the process, on the thread it occurred
    /// on, and starts the reporter. 1 when the reporter was started, else 0: no report file can be
    /// created, a debugger is attached, or there is no reporter. Never raises.
    ///
    /// Later calls return 0 at once. Only one on another thread waits for a report that is being
    /// written, at most ten seconds, because the process ends when the call returns. Where the
    /// thread has hardly any stack left (16 KB), the call does not return: it ends the process with
    /// the exception's code.
    static LONG WINAPI TopLevelFilter(EXCEPTION_POINTERS* exception) noexcept;
};
