// The colours that texts are written in can be read.
#include "base/Palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

// The relative luminance of the accessibility guidelines for the web, from 0 (black) to 1 (white).
double Luminance(COLORREF colour)
{
    const auto linear = [](int level) {
        const double share = level / 255.0;
        return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(GetRValue(colour)) + 0.7152 * linear(GetGValue(colour)) +
           0.0722 * linear(GetBValue(colour));
}

double Contrast(COLORREF one, COLORREF other)
{
    const double a = Luminance(one);
    const double b = Luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace

TEST(Contrast, IsThatOfTheGuidelines)
{
    EXPECT_NEAR(Contrast(RGB(0, 0, 0), RGB(255, 255, 255)), 21, 1e-9);
    EXPECT_NEAR(Contrast(RGB(119, 119, 119), RGB(255, 255, 255)), 4.48, 0.01);
}

TEST(Palette, EveryTextStandsOutFromItsGround)
{
    for (const exam::palette::Pair& pair : exam::palette::texts)
        EXPECT_GE(Contrast(pair.text, pair.ground), 4.5)
            << std::hex << pair.text << " on " << pair.ground;
}
