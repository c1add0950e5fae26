// The application draws its texts with a smooth font.
#include "base/Painting.h"

#include "record/PixelCanvas.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace exam;

// A font may ask for plain black and white in small sizes; the one of the application must not.
TEST(TextFontTest, IsSmoothInTheSizeOfMostTexts)
{
    const CRect area(0, 0, 200, 30);
    PixelCanvas canvas(area.Size());
    {
        const ScopedFont font(canvas.Context(), ScopedFont::textSize, FW_NORMAL);
        canvas.Context().SetTextColor(RGB(255, 255, 255));
        canvas.Context().SetBkColor(RGB(0, 0, 0));
        canvas.Context().TextOut(0, 0, L"Sample exam");
    }
    std::vector<unsigned int> pixels;
    canvas.Cut(area, pixels);
    int full = 0, shades = 0;
    for (const unsigned int pixel : pixels) {
        full += pixel == 0xFFFFFFFF;
        shades += pixel != 0xFFFFFFFF && pixel != PixelCanvas::opaque;
    }
    EXPECT_GT(full, 0);
    EXPECT_GT(shades, full);
}

} // namespace
