#pragma once

#include <cstdint>

/// A rectangle by its edges. Nothing here normalises it: left may be larger than right, and whether
/// the right and bottom edges belong to it is the caller's convention.
struct URect
{
    std::int32_t left = 0;   ///< x of the left edge
    std::int32_t top = 0;    ///< y of the top edge
    std::int32_t right = 0;  ///< x of the right edge
    std::int32_t bottom = 0; ///< y of the bottom edge

    /// Compares the four edges as they are.
    friend constexpr bool operator==(const URect&, const URect&) = default;
};
