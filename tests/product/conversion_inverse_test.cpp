// Pixels to lines and samples: the round trip, the meaning of fractions, and the pixels outside.
#include "ConversionScene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <limits>

using qor_utils::ConversionModel;
using qor_utils::radiansPerMillidegree;

namespace {

// The distance of neighbouring lines or samples at a position, in microns; the smaller of the two.
double Fineness(const Scene& s, double line, double sample)
{
    const ConversionModel model = ModelOf(s);
    const auto apart = [&](double dl, double ds) {
        const auto a = model.ToMicrons({line, sample});
        const auto b = model.ToMicrons({line + dl, sample + ds});
        return std::hypot(a.x - b.x, a.y - b.y);
    };
    double skew = std::cos(s.probe.type == 1 ? s.steerAngle * radiansPerMillidegree : 0.0);
    if (s.scanB != 0) {
        const double sector = (s.probe.sectorAngle + s.scanB) * radiansPerMillidegree;
        skew = std::cos(std::fabs(line - (s.lines - 1) / 2.0) * sector / s.lines);
    }
    return std::min(apart(1e-3, 0), apart(0, 1e-3)) * 1e3 * skew;
}

} // namespace

TEST(InverseConversion, MapsEveryPixelBackWithinOneLineAndOneSample)
{
    Random random(20240917);
    int tried = 0;
    while (tried < 60000) {
        Scene s = RandomScene(random, tried % 3);
        const int line = random.Int(0, s.lines - 1) - s.lineOffset;
        const int sample = random.Int(0, 4000);
        if (s.probe.radius < 0 &&
            sample * qor_utils::GetSampleSize(s.samplingFreq, s.soundSpeed) > -s.probe.radius)
            continue; // the lines cross behind the centre of a concave face
        const double fine = Fineness(s, line + s.lineOffset, sample);
        if (fine < 1) continue;
        s.scale = {random.Int(1, static_cast<int>(fine)), random.Int(1, static_cast<int>(fine))};
        const ScanPixel back = Precise(s, Unflip(s, Forward(s, line, sample)));
        ASSERT_NEAR(LineOf(back), line + s.lineOffset, 1)
            << Describe(s) << " line " << line << " sample " << sample;
        ASSERT_NEAR(SampleOf(back), sample, 1)
            << Describe(s) << " line " << line << " sample " << sample;
        ++tried;
    }
}

TEST(InverseConversion, ReachesASixteenthWherePixelsAreFineEnough)
{
    Random random(20240917);
    for (int i = 0; i < 3000; ++i) {
        Scene s = RandomScene(random, i % 3);
        s.scale = {1, 1};
        s.soundSpeed = 1540;
        s.samplingFreq = 7700000; // 100 pixels a sample
        const int line = random.Int(0, s.lines - 1) - s.lineOffset;
        const int sample = random.Int(2000, 4000);
        if (Fineness(s, line + s.lineOffset, sample) < 50 || s.probe.radius < 0) continue;
        const ScanPixel back = Precise(s, Unflip(s, Forward(s, line, sample)));
        ASSERT_NEAR(LineOf(back), line + s.lineOffset, 1 / 16.0) << Describe(s);
        ASSERT_NEAR(SampleOf(back), sample, 1 / 16.0) << Describe(s);
    }
}

TEST(Conversion, PixelDistanceAlongALineIsTheDepthDifference)
{
    Random random(20240917);
    for (int i = 0; i < 30000; ++i) {
        Scene s = RandomScene(random, i % 3);
        const int scale = random.Int(20, 400);
        s.scale = {scale, scale};
        const int line = random.Int(0, s.lines - 1);
        const int a = random.Int(0, 4000);
        const int b = random.Int(0, 4000);
        const UPoint p = Forward(s, line, a);
        const UPoint q = Forward(s, line, b);
        const double pixels =
            std::hypot(static_cast<double>(p.x) - q.x, static_cast<double>(p.y) - q.y);
        const double depth =
            std::abs(a - b) * qor_utils::GetSampleSize(s.samplingFreq, s.soundSpeed);
        // Both ends are rounded, which may add a pixel in each direction.
        ASSERT_NEAR(pixels, depth / scale, 1.4143) << Describe(s);
    }
}

TEST(InverseConversion, CountsFromTheCornerOfARectangle)
{
    const Scene s = SampleScene();
    const ScanPixel plain = Precise(s, {700, 700});
    const ScanPixel relative = Precise(s, {700, 700}, {40, 100, 200, 900});
    EXPECT_EQ(relative.line, plain.line - 40);
    EXPECT_EQ(relative.sample, plain.sample - 100);
    EXPECT_EQ(relative.lineFraction, plain.lineFraction);
    EXPECT_EQ(relative.sampleFraction, plain.sampleFraction);
}

TEST(InverseConversion, RoundsDownwardsWithPositiveSixteenths)
{
    // 10 pixels a line and a sample.
    const ZelProbe probe{1, 101, 100, 0, 0};
    const Scene s{probe, 101, 7700000, 1540, 0, 0, 0, {500, 0}, {10, 10}, 0, 0, 0};
    EXPECT_EQ(LineOf(Precise(s, {500, 0})), 50);
    const ScanPixel left = Precise(s, {-5, -5});
    EXPECT_EQ(left.line, -1);
    EXPECT_EQ(left.lineFraction, 8u);
    EXPECT_EQ(left.sample, -1);
    EXPECT_EQ(left.sampleFraction, 8u);
}

TEST(InverseConversion, UnusableInputIsOutside)
{
    const Scene good = SampleScene();
    const auto outside = [](const Scene& s) {
        const ScanPixel p = Precise(s, {640, 500}, {5, 6, 7, 8});
        return p.line == -1 && p.sample == -1 && p.lineFraction == 0 && p.sampleFraction == 0;
    };
    EXPECT_FALSE(outside(good));
    const auto with = [&](auto change) {
        Scene s = good;
        change(s);
        return outside(s);
    };
    EXPECT_TRUE(with([](Scene& s) { s.probe.type = 7; }));
    EXPECT_TRUE(with([](Scene& s) { s.probe.radius = 0; }));
    EXPECT_TRUE(with([](Scene& s) { s.probe.elements = 0; }));
    EXPECT_TRUE(with([](Scene& s) { s.probe.pitch = -1; }));
    EXPECT_TRUE(with([](Scene& s) { s.samplingFreq = 0; }));
    EXPECT_TRUE(with([](Scene& s) { s.samplingFreq = -1; }));
    EXPECT_TRUE(with([](Scene& s) { s.soundSpeed = 0; }));
    EXPECT_TRUE(with([](Scene& s) { s.lines = 0; }));
    EXPECT_TRUE(with([](Scene& s) { s.scale.x = 0; }));
    EXPECT_TRUE(with([](Scene& s) { s.scale.y = 0; }));
    EXPECT_TRUE(with([](Scene& s) { s.probe = {2, 64, 220, 0, 0}; }));
    EXPECT_TRUE(with([](Scene& s) { s.probe = {2, 64, 220, 0, 50000}, s.scanB = -50000; }));
    EXPECT_TRUE(with([](Scene& s) { s.probe = linear, s.steerAngle = 120000; }));
}

TEST(InverseConversion, TakesNoProbeNoDestinationsAndNoNumbers)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    int line = 7;
    int sample = 7;
    const auto call = [&](const ZelProbe* probe, double sinSteer, double cosSteer) {
        ScanConverter::GetPreciseUSCoordinates(1, 2, &line, &sample, nullptr, nullptr, {}, probe,
                                               1540, 0, 0, 100, 1000000, {0, 0}, {10, 10}, sinSteer,
                                               cosSteer, true);
    };
    call(nullptr, 0, 1);
    EXPECT_EQ(line, -1);
    EXPECT_EQ(sample, -1);
    line = sample = 7;
    call(&sampleCurved, nan, nan);
    EXPECT_EQ(line, -1);
    EXPECT_EQ(sample, -1);
    line = sample = 7;
    call(&linear, std::numeric_limits<double>::infinity(), 1);
    EXPECT_EQ(line, -1);
    EXPECT_EQ(sample, -1);
}

TEST(InverseConversion, SurvivesAbsurdInput)
{
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, 1000, INT_MAX - 1, INT_MAX};
    Random random(20240917);
    const auto any = [&] { return extremes[random.Int(0, 7)]; };
    for (int i = 0; i < 100000; ++i) {
        Scene s;
        s.probe = {random.Int(0, 2), any(), any(), any(), any()};
        s.lines = any();
        s.samplingFreq = any();
        s.soundSpeed = any();
        s.steerAngle = any();
        s.scanB = any();
        s.origin = {any(), any()};
        s.scale = {any(), any()};
        const ScanPixel p = Precise(s, {any(), any()}, {any(), any(), any(), any()});
        ASSERT_LT(p.lineFraction, 16u);
        ASSERT_LT(p.sampleFraction, 16u);
    }
}
