#pragma once

#include <Utils_Statics/export.h>

#include <cstdint>

class zelXMLNode;

/// The place and the size of a button on the grid of a panel. The client's layout turns them into
/// pixels.
struct UTILS_STATICS_API GridInfo
{
    std::int32_t row;    ///< -1: not placed
    std::int32_t column; ///< -1: not placed
    double height;       ///< in grid units
    double span;         ///< width, in grid units
    double offset;       ///< shift across, in grid units
    double displacement; ///< shift down, in grid units

    /// Sets the values of Reset: not placed, one unit high and wide, not shifted.
    GridInfo() noexcept;
    void Reset() noexcept;

    /// True when both row and column are set.
    bool IsValid() const noexcept;

    /// True for the same cell with every real number less than 0.001 apart. Decimal numbers count
    /// as they are written: 1.0 and 1.001 are 0.001 apart, hence not equal. A NaN equals nothing.
    bool operator==(const GridInfo& other) const noexcept;
    bool operator!=(const GridInfo& other) const noexcept;

    /// Reads the six attributes, named like the fields. An attribute that is missing or no number
    /// sets its field to the value of Reset. An invalid element changes nothing.
    void Load(const zelXMLNode& node);

    /// Always writes row and column, and writes each real number that is more than 0.001 away from
    /// the value of Reset. The attributes of the other numbers are removed, so that a file holds
    /// only what differs. Writes nothing into an invalid element.
    void Save(const zelXMLNode& node) const;
};
