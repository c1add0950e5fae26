#pragma once

#include "diagnostics/FixedText.h"

namespace utils_statics {

// Registry values that configure the crash handler. They are read from the registry itself, below
// the application's key of the current user, because the application may no longer respond.

using SettingText = FixedText<1024>;

// A 32-bit number; the default for anything else.
int CrashSettingNumber(const wchar_t* section, const wchar_t* name, int defaultValue) noexcept;

// A text; the default for a value of any other type, and for one that does not fit.
void CrashSettingText(const wchar_t* section, const wchar_t* name, const wchar_t* defaultValue,
                      SettingText& out) noexcept;

} // namespace utils_statics
