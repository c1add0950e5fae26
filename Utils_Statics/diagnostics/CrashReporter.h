#pragma once

#include "diagnostics/CrashFiles.h"

namespace utils_statics {

// The external program that collects the files of a crash.

// Writes the settings file that tells the reporter what to collect, "crashreport.ini" in the
// program's folder.
void WriteReporterSettings(const CrashFiles& files) noexcept;

// False when the reporter cannot be started.
bool StartReporter(const CrashFiles& files) noexcept;

} // namespace utils_statics
