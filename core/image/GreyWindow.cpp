#include "image/GreyWindow.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace exam {

namespace {

constexpr int brightest = 255;
constexpr int dynamicRange = 60; // decibels between the darkest and the brightest grey level

} // namespace

GreyWindow GreyWindow::Moved(int byLevel, int byWidth) const
{
    return {std::clamp(level + byLevel, 0, brightest),
            std::clamp(width + byWidth, 1, brightest + 1)};
}

// Echoes are levels of decibels, so gain is added to them.
std::array<std::uint8_t, 256> GreyTable(const GreyWindow& window, int gain)
{
    const double middle = window.level - 0.5;
    const double half = (window.width - 1) / 2.0;
    std::array<std::uint8_t, 256> table{};
    for (int i = 0; i <= brightest; ++i) {
        const int echo = std::clamp(i + gain * brightest / dynamicRange, 0, brightest);
        double grey = echo <= middle - half ? 0 : brightest;
        if (echo > middle - half && echo <= middle + half)
            grey = ((echo - middle) / (window.width - 1) + 0.5) * brightest;
        table[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(std::lround(grey));
    }
    return table;
}

} // namespace exam
