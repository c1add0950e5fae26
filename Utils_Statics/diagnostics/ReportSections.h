#pragma once

#include "diagnostics/CrashFiles.h"
#include "diagnostics/ReportText.h"

#include <windows.h>

#include <cstdint>

// The parts of the crash report, in their order. Each writes what it can find out. What it cannot
// find out is "Unknown" or left out.
namespace utils_statics {

// The format of an address.
#ifdef _WIN64
#define ADDRESS_FORMAT L"%016I64x"
#else
#define ADDRESS_FORMAT L"%08x"
#endif

// Finds out before a crash what never changes in a process.
void PrepareSystemDetails() noexcept;

// Writes what happened and where; for an access violation also the address.
void WriteExceptionCause(ReportText& report, const CrashFiles& files,
                         const EXCEPTION_POINTERS& exception) noexcept;
void WriteAccessViolation(ReportText& report, const EXCEPTION_RECORD& record) noexcept;

// The report's name of an exception, with its article: "an Access Violation".
const wchar_t* ExceptionText(DWORD code) noexcept;

// Writes when the process began, when it ends, and how long it ran.
void WriteProcessTimes(ReportText& report) noexcept;

// Writes the program and user, operating system, processors, and memory of the system and of the
// process.
void WriteSystemDetails(ReportText& report, const CrashFiles& files) noexcept;

// The report's name of a version of the operating system.
const wchar_t* SystemName(const OSVERSIONINFOW& system) noexcept;

// Writes the registers, the code and the stack of the crashed thread.
void WriteRegisters(ReportText& report, const CONTEXT& context) noexcept;
void WriteCodeBytes(ReportText& report, const CONTEXT& context) noexcept;
void WriteStack(ReportText& report, const CONTEXT& context, std::uintptr_t stackBase) noexcept;

// Writes every module in the process's address space, with its version.
void WriteModules(ReportText& report) noexcept;

} // namespace utils_statics
