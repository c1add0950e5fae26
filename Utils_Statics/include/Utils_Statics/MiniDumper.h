#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

/// The crash handler. The application constructs one at its start; from then on, when the process
/// dies of an exception that nobody handles, a report, a memory dump and the settings for the crash
/// reporter are written, and the reporter is started. docs/formats/crash-report.md describes the
/// files.
///
/// What a crash needs is made ready here, because little can be relied on afterwards: two threads
/// that wait (a report may have to be written where the crashed thread has no stack left), and the
/// platform's DbgHelp library. The library cannot be unloaded any more.
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
    /// created, a debugger is attached, or there is no reporter. Later calls return 0 at once, but
    /// one on another thread waits for a report that is being written, because the process ends
    /// when the call returns. Never raises.
    static LONG WINAPI TopLevelFilter(EXCEPTION_POINTERS* exception) noexcept;
};
