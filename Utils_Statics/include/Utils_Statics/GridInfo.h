#pragma once

#include <Utils_Statics/export.h>

#include <cstdint>

class zelXMLNode;

/// The place and the size of a button on the grid of a panel. The layout that makes pixels of them
/// is the client's.
struct UTILS_STATICS_API GridInfo
{
    std::int32_t row;    ///< -1: not placed
    std::int32_t column; ///< -1: not placed
    double height;       ///< in grid units
    double span;         ///< the width, in grid units
    double offset;       ///< shift across, in grid units
    double displacement; ///< shift down, in grid units

    /// Not placed, of one unit's size and not shifted.
    GridInfo() noexcept;
    void Reset() noexcept;

    /// Whether both row and column are set.
    bool IsValid() const noexcept;

    /// Same cell, and every real number less than 0.001 apart. Numbers written in decimals count as
    /// they are written: 1.0 and 1.001 are 0.001 apart, hence not equal. A NaN equals nothing.
    bool operator==(const GridInfo& other) const noexcept;
    bool operator!=(const GridInfo& other) const noexcept;

    /// Reads the six attributes, named like the fields. One that is missing or no number takes its
    /// field back to the value of Reset. An invalid element changes nothing.
    void Load(const zelXMLNode& node);

    /// Writes row and column always, and each real number that is more than 0.001 away from the
    /// value of Reset. The attribute of any other is removed, so that a file holds what differs
    /// only. Into an invalid element nothing is written.
    void Save(const zelXMLNode& node) const;
};
