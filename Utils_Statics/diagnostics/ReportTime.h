#pragma once

#include "diagnostics/FixedText.h"

#include <windows.h>

namespace utils_statics {

// A moment in local time, as the report writes it: "6/30/2024 09:05:07".
FixedText<64> LocalTimeText(const FILETIME& utc) noexcept;

// The present in local time, as the names of a crash's files have it: "06302024_090506", in steps
// of two seconds.
FixedText<64> DosTimeStamp() noexcept;

// Units of 100 nanoseconds.
unsigned long long TimeUnits(const FILETIME& time) noexcept;

} // namespace utils_statics
