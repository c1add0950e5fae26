// Arcs of constant depth as the device gets them, to the pixel, and the parameters that reach the
// conversion routines.
#include "DrawingRecorder.h"
#include "GeometryScene.h"

#include <gtest/gtest.h>
#include <test_support/Random.h>

#include <string>

using test_support::Random;

namespace {

struct ArcScene : Scene
{
    // The only arc that is drawn at a depth from line to line.
    RecordedArc Arc(int sample, int line1, int line2) const
    {
        DrawingRecorder recorder;
        Horizontal(recorder.Dc(), sample, line1, line2);
        const std::vector<RecordedArc> arcs = recorder.TakeArcs();
        EXPECT_EQ(arcs.size(), 1u);
        return arcs.empty() ? RecordedArc{} : arcs.front();
    }
};

Scene RandomScene(Random& random, int type)
{
    Scene s;
    s.probe = {type, random.Int(16, 256), random.Int(200, 400), random.Int(30000, 60000),
               random.Int(60000, 100000)};
    s.origin = {random.Int(-100, 500), random.Int(-100, 500)};
    s.scale = {random.Int(50, 400), random.Int(50, 400)};
    s.samplingFreq = random.Int(2000000, 20000000);
    s.scanA = random.Int(-20000, 20000);
    s.scanB = random.Int(1, 20000);
    s.soundSpeed = random.Int(1400, 1600);
    s.scanC = random.Int(-10, 10);
    s.width = random.Int(300, 900);
    s.height = random.Int(300, 900);
    s.flip = random.Int(0, 3);
    s.ld = random.Int(0, 300);
    return s;
}

} // namespace

// 300 samples of 100 microns before a face of 40 mm: 70 mm, that is 318.18 pixels of 220 microns
// and 350 of 200.
TEST(Arc, LiesInABoxOnePixelLargerAtTheRightAndTheBottom)
{
    ArcScene s;
    EXPECT_EQ(s.Arc(300, 5, 90).box, (URect{320 - 319, -60 - 351, 320 + 320 - 1, -60 + 352 - 1}));
    s.flip = 1;
    EXPECT_EQ(s.Arc(300, 5, 90).box, (URect{640 - 640, -411, 640 - 1 - 1, 291}));
    s.flip = 2;
    EXPECT_EQ(s.Arc(300, 5, 90).box, (URect{1, 480 - 292, 639, 480 + 411 - 1}));
    s.flip = 3;
    EXPECT_EQ(s.Arc(300, 5, 90).box, (URect{0, 188, 638, 890}));
}

// 300 samples before a concave face of 40 mm: 10 mm on the other side of its centre, -45.45 pixels
// and -50.
TEST(Arc, LiesInAReversedBoxBeforeTheCentreOfAConcaveFace)
{
    ArcScene s;
    s.probe.radius = -40000;
    EXPECT_EQ(s.Arc(300, 5, 90).box, (URect{320 - 43, -60 - 48, 320 + 44 - 1, -60 + 49 - 1}));
}

// 302 samples of 51.33 microns are 15502.67 microns.
TEST(Arc, TruncatesDepthAndPixels)
{
    ArcScene s;
    s.samplingFreq = 15000000;
    s.scale = {55503, 27752}; // one more than the radius, and than half of it
    EXPECT_EQ(s.Arc(302, 5, 90).box, (URect{320 - 1, -60 - 2, 320 + 2 - 1, -60 + 3 - 1}))
        << "0 and 1 pixels";
    s.scale = {24498, 24499};
    EXPECT_EQ(s.Arc(-302, 5, 90).box, (URect{320 - 2, -60 - 1, 320 + 3 - 1, -60 + 2 - 1}))
        << "towards zero";
}

TEST(Arc, StartsAtTheEndWithTheSmallerXUnlessItIsReversed)
{
    for (const int radius : {40000, -90000})
        for (const int flip : {0, 1, 2, 3}) {
            SCOPED_TRACE("radius " + std::to_string(radius) + " flip " + std::to_string(flip));
            ArcScene s;
            s.probe.radius = radius;
            s.flip = flip;
            const UPoint a = s.At(5, 300);
            const UPoint b = s.At(90, 300);
            ASSERT_NE(a.x, b.x);
            const bool reversed = (radius < 0) != ((flip & 2) != 0);
            const bool fromA = (a.x < b.x) != reversed;
            for (const RecordedArc& arc : {s.Arc(300, 5, 90), s.Arc(300, 90, 5)}) {
                EXPECT_EQ(arc.start, fromA ? a : b);
                EXPECT_EQ(arc.end, fromA ? b : a);
            }
        }
}

// Steered by a quarter turn, lines 10 and 85 of 96 lie one above the other.
TEST(Arc, OfTwoEndsOneAboveTheOtherStartsAtTheSecondOrReversedAtTheFirst)
{
    ArcScene s;
    s.scanA = 90000;
    for (const auto& [line1, line2] : {std::pair(10, 85), std::pair(85, 10)}) {
        s.flip = 0;
        ASSERT_EQ(s.At(10, 300).x, s.At(85, 300).x);
        ASSERT_NE(s.At(10, 300).y, s.At(85, 300).y);
        EXPECT_EQ(s.Arc(300, line1, line2).start, s.At(line2, 300));
        EXPECT_EQ(s.Arc(300, line1, line2).end, s.At(line1, 300));
        s.flip = 2;
        EXPECT_EQ(s.Arc(300, line1, line2).start, s.At(line1, 300));
        EXPECT_EQ(s.Arc(300, line1, line2).end, s.At(line2, 300));
    }
}

TEST(Arc, IsNotDrawnBeyondWhatGdiCanDraw)
{
    ArcScene s;
    s.origin = {320, -600000};
    DrawingRecorder recorder;
    EXPECT_EQ(s.Horizontal(recorder.Dc(), 300, 5, 90), Bounds(s.At(5, 300), s.At(90, 300)));
    EXPECT_TRUE(recorder.TakeArcs().empty());
}

TEST(Arc, IsNotDrawnWiderThanGdiCanDraw)
{
    ArcScene s;
    s.scale = {1, 1};
    s.origin = {0, 0};
    s.probe.radius = 262142 - 30000;
    EXPECT_EQ(s.Arc(300, 5, 90).box.left, -1 - 262142); // the box is 524287 pixels wide
    ++s.probe.radius;
    DrawingRecorder recorder;
    s.Horizontal(recorder.Dc(), 300, 5, 90);
    EXPECT_TRUE(recorder.TakeArcs().empty());
}

TEST(Drawing, PassesEveryParameterOn)
{
    Random random(99);
    for (int i = 0; i < 3000; ++i) {
        const Scene s = RandomScene(random, i % 3); // an extended sector, so nothing is clipped
        const int line = random.Int(0, 200);
        const int line2 = random.Int(0, 200);
        const int sample = random.Int(0, 1000);
        const int sample2 = random.Int(0, 1000);
        const ULine clip{random.Int(0, 900), 0, random.Int(0, 900), 900};
        const URect along = Bounds(s.At(line, sample), s.At(line, sample2));
        const URect across = Bounds(s.At(line, sample), s.At(line2, sample));
        ASSERT_EQ(s.Vertical(nullptr, line, sample, sample2), along);
        ASSERT_EQ(s.Horizontal(nullptr, sample, line, line2), across);
        ASSERT_EQ(s.VerticalClip(nullptr, line, sample, sample2, clip, clip), along);
        ASSERT_EQ(s.HorizontalClip(nullptr, sample, line, line2, clip, clip), across);
        ASSERT_EQ(s.Below(line, sample, 0),
                  qor_utils::GetPixelCoordinates(line, sample, s.origin, s.scale, s.samplingFreq,
                                                 s.scanA, s.scanB, &s.probe, s.soundSpeed, s.scanC,
                                                 s.width, s.height, s.flip));
    }
}
