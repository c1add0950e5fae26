#pragma once

#include <cstdint>

/// What changed. The values are the application's, which completes this enumeration in a header of
/// its own with the same underlying type; the library carries them without reading any.
enum StateChangeType : std::int32_t;
