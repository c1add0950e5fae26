#pragma once

#include <cstdint>

/// A point, or a pair of horizontal and vertical values such as microns per pixel.
struct UPoint
{
    std::int32_t x = 0; ///< across
    std::int32_t y = 0; ///< down

    /// Compares both values.
    friend constexpr bool operator==(const UPoint&, const UPoint&) = default;
};
