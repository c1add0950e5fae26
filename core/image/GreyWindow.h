#pragma once

#include <array>
#include <cstdint>

namespace exam {

/// The grey levels that are spread from black to white. Darker ones are black, and brighter ones
/// white.
struct GreyWindow
{
    int level = 128; ///< the window's middle, from 0 to 255
    int width = 256; ///< how many levels it takes in, from 1 to 256

    /// The same window with other numbers, kept within these bounds.
    GreyWindow Moved(int byLevel, int byWidth) const;

    friend bool operator==(const GreyWindow&, const GreyWindow&) = default;
};

/// The grey of each level. The window is the linear function of DICOM PS3.3, C.11.2.1.2.1, so that
/// the widest one changes nothing. Gain in decibels is added first.
std::array<std::uint8_t, 256> GreyTable(const GreyWindow& window, int gain);

} // namespace exam
