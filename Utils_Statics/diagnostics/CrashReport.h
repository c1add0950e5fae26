#pragma once

#include <windows.h>

// The crash report as a whole: what the filter of unhandled exceptions does.
namespace utils_statics {

// Prepares everything that a report needs and that a crash may make unavailable. Only the process's
// first call does anything.
void PrepareCrashReport() noexcept;

// Writes report, dump and settings for the process's first unhandled exception, and starts the
// reporter. Returns 1 when it was started, else 0.
LONG WriteCrashReport(EXCEPTION_POINTERS* exception) noexcept;

} // namespace utils_statics
