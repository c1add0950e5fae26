#pragma once

#include <windows.h>

// The crash report as a whole: what the filter of unhandled exceptions does.
namespace utils_statics {

// Makes ready what a report needs and what may not be had any more after a crash. Once a process;
// later calls do nothing.
void PrepareCrashReport() noexcept;

// Writes report, dump and settings of the process's first unhandled exception, and starts the
// reporter. 1 when it was started, else 0.
LONG WriteCrashReport(EXCEPTION_POINTERS* exception) noexcept;

} // namespace utils_statics
