#include "image/CineFile.h"
#include "ImagedRect.h"
#include "record/PixelCanvas.h"
#include "SyntheticCine.h"

#include <gtest/gtest.h>

#include <cmath>

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

TEST(ImageView, FillsWhatLiesOutsideTheImagedRegion)
{
    ImageView view;
    Show(Curved(), view);
    PixelCanvas canvas(CSize(320, 300));
    view.Paint(canvas.Context(), CPoint(10, 20));
    view.FillOutside(canvas.Context(), CPoint(10, 20), RGB(255, 255, 255));
    const auto at = [&](CPoint pixel) {
        return canvas.Context().GetPixel(pixel.x + 10, pixel.y + 20);
    };
    EXPECT_EQ(at({0, 0}), RGB(255, 255, 255));
    EXPECT_EQ(at({299, 279}), RGB(255, 255, 255));
    const CPoint inside = view.Parameters().Pixel(lines / 2, samples / 2);
    EXPECT_EQ(at(inside), RGB(level, level, level));
    EXPECT_EQ(canvas.Context().GetPixel(5, 5), 0u); // beside the image
}

TEST(ImageView, ABeamEntersTheBodyAtTheProbesFace)
{
    ImageView view;
    Show(Curved(), view);
    const ImagingParameters& image = view.Parameters();
    const CPoint straight = image.EntryOfBeam({10, 200}, {10, 400});
    EXPECT_LE(std::abs(straight.x - image.Pixel(10, 0).x), 2);
    EXPECT_LE(std::abs(straight.y - image.Pixel(10, 0).y), 2);
    Show(Linear(), view);
    const CPoint slanted = view.Parameters().EntryOfBeam({30, 200}, {20, 400});
    EXPECT_LE(std::abs(slanted.x - view.Parameters().Pixel(40, 0).x), 3);
    EXPECT_EQ(slanted.y, view.Parameters().Pixel(40, 0).y);
    EXPECT_EQ(view.Parameters().EntryOfBeam({30, 0}, {10, 0}), view.Parameters().Pixel(30, 0));
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

TEST(ImageView, ZoomsAtAPixelAsFarAsEightTimes)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ImageView view;
        Show(cine, view);
        const ImagingParameters whole = view.Parameters();
        view.ZoomAt(3, {150, 140}); // the frame is larger than the image in both directions
        const CPoint pixel(120, 160);
        const FramePoint before = view.Parameters().InFrame({1.0 * pixel.x, 1.0 * pixel.y});
        for (int i = 0; i < 20; ++i) {
            view.ZoomAt(1.25, pixel);
            const ImagingParameters& image = view.Parameters();
            const FramePoint after = image.InFrame({1.0 * pixel.x, 1.0 * pixel.y});
            EXPECT_NEAR(after.x, before.x, whole.micronsPerPixel.x) << view.Zoom();
            EXPECT_NEAR(after.y, before.y, whole.micronsPerPixel.y) << view.Zoom();
            EXPECT_NEAR(image.micronsPerPixel.x, whole.micronsPerPixel.x / view.Zoom(), 0.5);
        }
        EXPECT_EQ(view.Zoom(), ImageView::mostZoom);
        view.ShowWhole();
        EXPECT_EQ(view.Zoom(), 1);
        EXPECT_EQ(view.Parameters().Pixel(5, 5).x, whole.Pixel(5, 5).x);
        EXPECT_EQ(view.Parameters().Pixel(5, 5).y, whole.Pixel(5, 5).y);
    }
}

TEST(ImageView, PansAsFarAsTheEdgesOfTheFrame)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ImageView view;
        Show(cine, view);
        view.ZoomAt(4, {150, 140});
        for (const CSize away :
             {CSize(5000, 0), CSize(-9000, 0), CSize(0, 5000), CSize(0, -9000)}) {
            view.Pan(away);
            EXPECT_FALSE(ImagedRect(view).IsRectEmpty());
        }
        view.Pan(CSize(90000, 90000)); // the frame's upper left corner comes into view
        const CRect extent = ImagedRect(view);
        EXPECT_GT(extent.left, 0);
        EXPECT_GT(extent.top, 0);
    }
}

TEST(ImageView, AMovedImageShowsWhatWasShownThere)
{
    ImageView view;
    Show(Linear(), view);
    view.ZoomAt(3, {150, 140});
    const FramePoint before = view.Parameters().InFrame({100, 100});
    view.Pan(CSize(12, -9));
    const FramePoint after = view.Parameters().InFrame({112, 91});
    EXPECT_NEAR(after.x, before.x, 1);
    EXPECT_NEAR(after.y, before.y, 1);
}

TEST(ImageView, ShowsAPixelForEachSample)
{
    ImageView view;
    Show(Curved(), view);
    view.ShowSamples();
    EXPECT_EQ(view.Parameters().micronsPerPixel.y, std::lround(view.Parameters().SampleMicrons()));
}

TEST(ImageView, ADistanceIsTheSameAtAnyZoom)
{
    ImageView view;
    Show(Linear(), view);
    const auto distance = [&] {
        const ImagingParameters& image = view.Parameters();
        return image.Millimetres(image.Pixel(10, 20), image.Pixel(lines - 10, samples - 20));
    };
    const double whole = distance();
    for (const double factor : {2.0, 2.0, 1.7}) {
        view.ZoomAt(factor, {150, 140});
        EXPECT_NEAR(distance(), whole, 0.4);
    }
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
