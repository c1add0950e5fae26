#pragma once

#include <windows.h>

namespace utils_statics {

// The report's name of an exception, with its article: "an Access Violation".
const wchar_t* ExceptionText(DWORD code) noexcept;

} // namespace utils_statics
