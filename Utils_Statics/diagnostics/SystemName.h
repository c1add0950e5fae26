#pragma once

#include <windows.h>

namespace utils_statics {

// The report's name of a version of the operating system.
const wchar_t* SystemName(const OSVERSIONINFOW& system) noexcept;

} // namespace utils_statics
