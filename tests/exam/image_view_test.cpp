#include "SyntheticCine.h"

#include "image/CineCheck.h"

#include <gtest/gtest.h>

using namespace synthetic_cine;

TEST(ImageView, ShowsTheFrameWhereItsGeometrySays)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ImageView view;
        Show(cine, view);
        for (const int line : {1, lines / 2, lines - 2})
            for (const int sample : {3, samples / 2, samples - 4})
                EXPECT_EQ(view.Grey(view.Parameters().Pixel(line, sample)), level)
                    << "line " << line << ", sample " << sample;
        const CPoint left = view.Parameters().Pixel(0, samples / 2);
        const CPoint right = view.Parameters().Pixel(lines - 1, samples / 2);
        EXPECT_EQ(view.Grey({left.x - 4, left.y}), 0);
        EXPECT_EQ(view.Grey({right.x + 4, right.y}), 0);
    }
}

TEST(ImageView, FindsTheLineAndSampleOfAPixel)
{
    ImageView view;
    Show(Curved(), view);
    const ImagingParameters& image = view.Parameters();
    const UPoint found = image.ScanPosition(image.Pixel(20, 300));
    EXPECT_NEAR(found.x, 20, 1);
    EXPECT_NEAR(found.y, 300, 3);
}

// The conversion of frames knows whole apertures only. Shown over the whole aperture, a part of it
// would be measured wrongly.
TEST(CineHeader, OfAPartOfTheApertureIsRefused)
{
    EXPECT_EQ(FindHeaderProblem(Linear()), L"");
    CineDescription part = Linear();
    part.apertureLines = 2 * lines;
    EXPECT_NE(FindHeaderProblem(part), L"");
    part.apertureLines = 0; // one line per element
    EXPECT_NE(FindHeaderProblem(part), L"");
    part.stream.elements = lines;
    EXPECT_EQ(FindHeaderProblem(part), L"");
    part.lineOffset = 1;
    EXPECT_NE(FindHeaderProblem(part), L"");
}
