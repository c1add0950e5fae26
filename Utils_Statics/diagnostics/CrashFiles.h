#pragma once

#include "diagnostics/ReportText.h"

#include <string_view>

namespace utils_statics {

using CrashPath = FixedText<2 * MAX_PATH + 32>;

// The names and paths of one crash. They depend on the time of the crash and on the log folder at
// that time, so none is known before.
struct CrashFiles
{
    FixedText<32768> program; // the running program's file, "Unknown" when it cannot be told
    FixedText<MAX_PATH> processName;
    FixedText<MAX_PATH + 32> baseName; // the process's name and the time of the crash
    FixedText<MAX_PATH> folder;        // the log folder, with a separator at its end
    CrashPath report;
    CrashPath dump;
    CrashPath archive;
    CrashPath actionLog; // the search pattern when there is none
    bool hasActionLog;

    // The folder of the running program, with a backslash at its end.
    std::wstring_view ProgramFolder() const noexcept { return FolderPart(program.View()); }
};

// Finds them all; `logFolder` is the log folder as the logger names it, or a fall-back.
void FindCrashFiles(CrashFiles& files, std::wstring_view logFolder) noexcept;

// Registry values that configure the crash handler. They are read from the registry itself, below
// the application's key of the current user, because the application may no longer respond.

using SettingText = FixedText<1024>;

// A 32-bit number; the default for anything else.
int CrashSettingNumber(const wchar_t* section, const wchar_t* name, int defaultValue) noexcept;

// A text; the default for a value of any other type, and for one that does not fit.
void CrashSettingText(const wchar_t* section, const wchar_t* name, const wchar_t* defaultValue,
                      SettingText& out) noexcept;

} // namespace utils_statics
