#pragma once

#include "diagnostics/CrashFiles.h"
#include "diagnostics/ReportText.h"

#include <windows.h>

// The parts of the crash report, in their order. Each writes what it can find out; what it cannot
// is "Unknown" or left out.
namespace utils_statics {

// What is true of a process all its life, found out before it crashes.
void PrepareSystemDetails() noexcept;

// What happened and where; for an access violation also at which address.
void WriteExceptionCause(ReportText& report, const CrashFiles& files,
                         const EXCEPTION_POINTERS& exception) noexcept;
void WriteAccessViolation(ReportText& report, const EXCEPTION_RECORD& record) noexcept;

// When the process began, when it ends, and how long it ran.
void WriteProcessTimes(ReportText& report) noexcept;

// Program and user, operating system, processors, memory of the system and of the process.
void WriteSystemDetails(ReportText& report, const CrashFiles& files) noexcept;

// The registers, the code and the stack of the crashed thread.
void WriteRegisters(ReportText& report, const CONTEXT& context) noexcept;
void WriteCodeBytes(ReportText& report, const CONTEXT& context) noexcept;
void WriteStack(ReportText& report, const CONTEXT& context, std::uintptr_t stackBase) noexcept;

// Every module in the process's address space, with its version.
void WriteModules(ReportText& report) noexcept;

} // namespace utils_statics
