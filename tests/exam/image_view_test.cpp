#include "image/CineFile.h"
#include "SyntheticCine.h"

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

TEST(ImageView, GainAddsToTheGreyLevelsOfTheImagedRegion)
{
    ImageView view;
    for (const auto& [decibels, expected] :
         {std::pair{0, int{level}}, {6, level + 25}, {-6, level - 25}, {20, 255}, {-60, 0}}) {
        view.SetGain(decibels);
        Show(Linear(), view);
        const CPoint inside = view.Parameters().Pixel(lines / 2, samples / 2);
        EXPECT_EQ(view.Grey(inside), expected) << decibels;
        EXPECT_EQ(view.Grey({1, 1}), 0);
    }
}

TEST(ImageView, ShowsTheUpperPartOfADepth)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ImageView view;
        Show(cine, view, samples / 2);
        const ImagingParameters& image = view.Parameters();
        EXPECT_EQ(image.samples, samples / 2);
        for (const int line : {1, lines / 2, lines - 2})
            for (const int sample : {3, samples / 4, samples / 2 - 4})
                EXPECT_EQ(view.Grey(image.Pixel(line, sample)), level);
        const CPoint deepest = image.Pixel(lines / 2, samples / 2 - 1);
        EXPECT_EQ(view.Grey({deepest.x, deepest.y + 3}), 0);
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

// The conversion of frames supports whole apertures only. A part, shown over the whole aperture,
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
