#pragma once

#include <cstdint>

/// A directed line segment from (x1, y1) to (x2, y2).
struct ULine
{
    std::int32_t x1 = 0; ///< where it begins
    std::int32_t y1 = 0; ///< where it begins
    std::int32_t x2 = 0; ///< where it ends
    std::int32_t y2 = 0; ///< where it ends

    /// Compares both ends, so a reversed line differs.
    friend constexpr bool operator==(const ULine&, const ULine&) = default;
};
