#pragma once

#include <windows.h>

namespace utils_statics {

// What the report calls a version of the operating system.
const wchar_t* SystemName(const OSVERSIONINFOW& system) noexcept;

} // namespace utils_statics
