#include "GeometryScene.h"

#include <gtest/gtest.h>
#include <test_support/Random.h>

#include <climits>
#include <cmath>

using test_support::Random;

namespace {

constexpr ZelProbe Curved{0, 128, 300, 40000, 0};
constexpr ZelProbe Linear{1, 128, 300, 0, 0};
constexpr ZelProbe Phased{2, 64, 220, 0, 90000};

constexpr UPoint Origin{400, 10};
constexpr UPoint Scale{100, 100};
constexpr int frequency = 7700000; // 100 microns a sample at 1540 m/s

UPoint Coordinates(const ZelProbe* probe, UPoint pixel, int lines, int steer = 0, int offset = 0,
                   int width = 0, int height = 0, int flip = 0)
{
    return CImgGeometry::GetUSCoordinates(pixel.x, pixel.y, Origin, Scale, frequency, steer, 0,
                                          lines, probe, 1540, offset, width, height, flip);
}

} // namespace

TEST(CenterImageRect, LiesOnePixelLeftOfTheMiddle)
{
    CRect rect(10, 20, 110, 70);
    CImgGeometry::CenterImageRect(rect, 640);
    EXPECT_EQ(rect.left, 269);
    EXPECT_EQ(rect.right, 369);
    EXPECT_EQ(rect.top, 20);
    EXPECT_EQ(rect.bottom, 70);
}

TEST(CenterImageRect, DividesTowardZero)
{
    CRect rect(0, 0, 101, 1);
    CImgGeometry::CenterImageRect(rect, 641);
    EXPECT_EQ(rect.left, 320 - 50 - 1);
    EXPECT_EQ(rect.right, rect.left + 101);

    CRect reversed(7, 0, 0, 1); // width -7
    CImgGeometry::CenterImageRect(reversed, -3);
    EXPECT_EQ(reversed.left, -1 + 3 - 1);
    EXPECT_EQ(reversed.right, reversed.left - 7);
}

TEST(CenterImageRect, WrapsAroundAtTheEndsOfTheRange)
{
    CRect rect(INT_MIN, 0, INT_MAX, 1);
    CImgGeometry::CenterImageRect(rect, INT_MIN);
    EXPECT_EQ(rect.left, INT_MIN / 2 - 1);
    EXPECT_EQ(rect.right, rect.left - 1);
}

TEST(GetUSDistance, IsTruncatedAndSigned)
{
    EXPECT_EQ(CImgGeometry::GetUSDistance(10, 35, frequency, 1540), 2500);
    EXPECT_EQ(CImgGeometry::GetUSDistance(35, 10, frequency, 1540), -2500);
    // 1540e6 / 30e6 = 51.33 microns a sample
    EXPECT_EQ(CImgGeometry::GetUSDistance(0, 2, 15000000, 1540), 102);
    EXPECT_EQ(CImgGeometry::GetUSDistance(2, 0, 15000000, 1540), -102);
}

TEST(GetUSDistance, TakesTheDifferenceIn32Bits)
{
    EXPECT_EQ(CImgGeometry::GetUSDistance(INT_MIN, INT_MAX, frequency, 1540), -100);
    EXPECT_EQ(CImgGeometry::GetUSDistance(0, INT_MAX, 1, 1540), INT_MAX);
    EXPECT_EQ(CImgGeometry::GetUSDistance(0, 10, 0, 1540), 0)
        << "no sampling frequency, no distance";
}

TEST(GetPixelDistanceCoordinates, GoesWholeSamplesDeeper)
{
    const Scene s = SceneOf(Linear);
    EXPECT_EQ(s.Below(20, 50, 2000).y, 10 + 70);
    EXPECT_EQ(s.Below(20, 50, 2099).y, 10 + 70) << "truncated to whole samples";
    EXPECT_EQ(s.Below(20, 50, -2099).y, 10 + 30) << "toward zero";
    EXPECT_EQ(s.Below(20, 50, 2000).x, s.Below(20, 50, 0).x);
}

TEST(GetPixelDistanceCoordinates, FormsTheSoundSpeedProductIn32Bits)
{
    // 2200 x 1,000,000 wraps around to -2094967296.
    const int n = static_cast<int>(5000 / (-2094967296.0 / (2.0 * frequency)));
    ASSERT_LT(n, 0);
    Scene s = SceneOf(Linear);
    s.soundSpeed = 2200;
    EXPECT_EQ(s.Below(20, 500, 5000), s.At(20, 500 + n));
}

TEST(GetPixelDistanceCoordinates, GivesDefinedResultsWithoutAFrequency)
{
    Scene s = SceneOf(Linear);
    s.samplingFreq = 0;
    EXPECT_EQ(s.Below(20, 5, 5000), Origin);
    s = SceneOf(Linear);
    s.soundSpeed = 0;
    EXPECT_EQ(s.Below(20, 5, 5000), Origin);
    EXPECT_EQ(CImgGeometry::GetPixelDistanceCoordinates(20, 5, 0, Origin, Scale, 0, 0, 0, nullptr,
                                                        0, 0, 0, 0, 0),
              Origin);
}

TEST(GetPixelDistanceCoordinates, MovesByThePhysicalDistance)
{
    Random random(7);
    const ZelProbe probes[] = {Curved, Linear, Phased};
    for (int i = 0; i < 20000; ++i) {
        Scene s = SceneOf(probes[i % 3]);
        const int line = random.Int(0, s.probe.elements - 1);
        const int start = random.Int(0, 1000);
        const int distance = random.Int(0, 100000);
        const int scale = random.Int(30, 300);
        s.scale = {scale, scale};
        s.samplingFreq = random.Int(2000000, 20000000);
        s.scanA = random.Int(-20000, 20000);
        s.flip = i & 3;
        const UPoint a = s.Below(line, start, 0);
        const UPoint b = s.Below(line, start, distance);
        const double pixels =
            std::hypot(static_cast<double>(a.x) - b.x, static_cast<double>(a.y) - b.y);
        // Up to one sample is truncated; both ends are rounded to pixels in two directions.
        const double sample = qor_utils::GetSampleSize(s.samplingFreq, 1540);
        ASSERT_LE(pixels * scale, distance + 1.4143 * scale);
        ASSERT_GE(pixels * scale, distance - sample - 1.4143 * scale);
    }
}

TEST(GetUSCoordinates, IsZeroWithoutAProbe)
{
    EXPECT_EQ(Coordinates(nullptr, {400, 300}, 128), UPoint{});
}

TEST(GetUSCoordinates, CountsElementsLessTheLineOffset)
{
    // There are 3 pixels an element, with the middle between 63 and 64.
    EXPECT_EQ(Coordinates(&Linear, {400 - 190, 110}, 999), (UPoint{0, 100}))
        << "a linear probe ignores the lines";
    EXPECT_EQ(Coordinates(&Linear, {400 + 191, 110}, 999), (UPoint{127, 100}));
    EXPECT_EQ(Coordinates(&Linear, {400 + 191, 110}, 999, 0, 27), (UPoint{100, 100}));
    // There are 64 lines over 128 elements. The line straight below lies between 31 and 32, so
    // twice that.
    EXPECT_EQ(Coordinates(&Curved, {400, 10 + 400 + 100}, 64), (UPoint{63, 100}));
}

TEST(GetUSCoordinates, DividesByTheLinesOfAPhasedFrame)
{
    // 128 lines cover 64 elements of a sector of 90 degrees: straight below the origin is line
    // 63.5.
    EXPECT_EQ(Coordinates(&Phased, {400, 110}, 128), (UPoint{32, 100})); // 31.75
    EXPECT_EQ(Coordinates(&Phased, {400, 110}, 64), (UPoint{32, 100}));  // 31.5
    EXPECT_EQ(Coordinates(&Phased, {400, 110}, 16), (UPoint{30, 100}));  // 7.5 x 4
}

TEST(GetUSCoordinates, RoundsTheSixteenths)
{
    // There are 10 pixels an element, with the middle between 63 and 64.
    const ZelProbe wide{1, 128, 1000, 0, 0};
    EXPECT_EQ(Coordinates(&wide, {400 + 8, 110}, 0).x, 64);  // 63.5 + 0.8
    EXPECT_EQ(Coordinates(&wide, {400 + 11, 110}, 0).x, 65); // 63.5 + 1.1

    // There are 10 pixels a sample.
    const auto sampleAt = [](int y) {
        return CImgGeometry::GetUSCoordinates(400, y, Origin, Scale, frequency / 10, 0, 0, 128,
                                              &Linear, 1540, 0, 0, 0, 0)
            .y;
    };
    EXPECT_EQ(sampleAt(10 + 34), 3);
    EXPECT_EQ(sampleAt(10 + 36), 4);
}

TEST(GetUSCoordinates, UndoesTheFlip)
{
    const UPoint plain = Coordinates(&Linear, {250, 200}, 128);
    EXPECT_EQ(Coordinates(&Linear, {800 - 250, 200}, 128, 0, 0, 800, 600, 1), plain);
    EXPECT_EQ(Coordinates(&Linear, {250, 600 - 200}, 128, 0, 0, 800, 600, 2), plain);
    EXPECT_EQ(Coordinates(&Linear, {800 - 250, 600 - 200}, 128, 0, 0, 800, 600, 3), plain);
    EXPECT_EQ(Coordinates(&Linear, {250, 200}, 128, 0, 0, 0, 600, 3), plain)
        << "an image without width is not flipped";
    EXPECT_EQ(Coordinates(&Linear, {250, 200}, 128, 0, 0, 800, 0, 3), plain)
        << "nor one without height";
}

TEST(GetUSCoordinates, InvertsTheDrawnPositions)
{
    Random random(11);
    for (int i = 0; i < 30000; ++i) {
        ZelProbe probe{i % 3, random.Int(16, 256), random.Int(200, 400), random.Int(30000, 60000),
                       random.Int(60000, 100000)};
        const int steer = random.Int(-15000, 15000);
        const int scanB = probe.type == 2 ? random.Int(0, 1) * random.Int(1, 20000) : 0;
        const int offset = random.Int(-10, 10);
        const int flip = random.Int(0, 3);
        const int line = random.Int(0, probe.elements - 1) - offset;
        const int sample =
            random.Int(1500, 3000); // deep enough to spread fans out: 25 microns a pixel
        const UPoint scale{25, 25};
        const UPoint p =
            qor_utils::GetPixelCoordinates(line, sample, Origin, scale, frequency, steer, scanB,
                                           &probe, 1540, offset, 900, 700, flip);
        const UPoint back =
            CImgGeometry::GetUSCoordinates(p.x, p.y, Origin, scale, frequency, steer, scanB,
                                           probe.elements, &probe, 1540, offset, 900, 700, flip);
        ASSERT_NEAR(back.x, line, 1) << "type " << probe.type;
        ASSERT_NEAR(back.y, sample, 1) << "type " << probe.type;
    }
}

TEST(GetUSCoordinates, GivesDefinedResultsForUnusableInput)
{
    const ZelProbe none{1, 0, 300, 0, 0};
    EXPECT_EQ(Coordinates(&none, {400, 300}, 128), (UPoint{0, -1})) << "0 / 0 elements";
    EXPECT_EQ(Coordinates(&Curved, {400, 300}, 0), (UPoint{INT_MIN, -1}))
        << "no lines to divide by";
    const ZelProbe unknown{9, 128, 300, 0, 0};
    EXPECT_EQ(Coordinates(&unknown, {400, 300}, 128), (UPoint{-1, -1}));
    EXPECT_EQ(CImgGeometry::GetUSCoordinates(INT_MIN, INT_MAX, {INT_MAX, INT_MIN}, {0, 0}, 0,
                                             INT_MIN, INT_MAX, 0, &Linear, 0, 1, INT_MIN, INT_MAX,
                                             3),
              (UPoint{-2, -1}));
}
