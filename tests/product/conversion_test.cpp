// Lines and samples to pixels: the published coordinates, each kind of probe, steering, flips and
// unusable input.
#include "ConversionScene.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <filesystem>

using qor_utils::ConversionModel;
using qor_utils::radiansPerMillidegree;

namespace {

// The curved sample's published geometry: radius of the first and the last sample, and sector. Line
// 120 of 241 points straight down.
constexpr double firstRadius = 26400; // microns
constexpr double lastRadius = 131500;
constexpr double sector = 3.14159265358979323846 / 2 + 0.5;

qor_utils::MicronPoint Published(int line, int sample)
{
    const double t = (line - 120) * sector / 240;
    const double r = firstRadius + sample * (lastRadius - firstRadius) / 2047;
    return {r * std::sin(t), r * std::cos(t)};
}

// The committed recording's own description.
Scene CommittedSample()
{
    const std::filesystem::path path(u8"" SAMPLE_IMAGES "/curved.cine"); // any letters
    std::array<std::int32_t, 19> header{};
    const std::string bytes = test_support::ReadFile(path.wstring()).substr(0, sizeof header);
    EXPECT_EQ(bytes.size(), sizeof header) << path;
    std::memcpy(header.data(), bytes.data(), bytes.size());
    Scene s;
    s.samplingFreq = header[5];
    s.soundSpeed = header[6];
    s.probe = {header[7], header[8], header[9], header[10], header[11]};
    s.steerAngle = header[13];
    s.scanB = header[14];
    s.lineOffset = header[15];
    s.lines = header[16];
    return s;
}

void ExpectPublishedCoordinates(Scene s)
{
    s.origin = {640, -100};
    s.scale = {100, 100};
    double worst = 0;
    for (int line = 0; line < sampleLines; ++line)
        for (int sample = 0; sample < 2048; ++sample) {
            const auto expected = Published(line, sample);
            const auto m =
                ModelOf(s).ToMicrons({static_cast<double>(line), static_cast<double>(sample)});
            worst = std::max({worst, std::fabs(m.x - expected.x), std::fabs(m.y - expected.y)});
            const UPoint p = Forward(s, line, sample);
            // The tolerance is half a pixel of rounding plus the difference of the two
            // descriptions.
            ASSERT_NEAR(p.x, 640 + expected.x / 100, 0.55);
            ASSERT_NEAR(p.y, -100 + expected.y / 100, 0.55);
        }
    EXPECT_LT(worst, 5) << "microns: a twentieth of a pixel";
}

} // namespace

TEST(ForwardConversion, ReproducesThePublishedCoordinatesOfTheCurvedSample)
{
    ExpectPublishedCoordinates(
        {sampleCurved, sampleLines, sampleFrequency, 1540, 0, 0, 0, {}, {}, 0, 0, 0});
}

TEST(ForwardConversion, ReproducesThemFromTheCommittedRecordingsDescription)
{
    ExpectPublishedCoordinates(CommittedSample());
}

TEST(ForwardConversion, LinearLinesAreParallelAndShearedBySteering)
{
    const UPoint scale{100, 100};
    const auto at = [&](int line, int sample, int steer) {
        return qor_utils::GetPixelCoordinates(line, sample, {1000, 10}, scale, 7700000, steer, 0,
                                              &linear, 1540, 0, 0, 0, 0);
    };
    // 100 microns a sample; 3 pixels an element; the middle of 128 elements is between 63 and 64.
    EXPECT_EQ(at(0, 0, 0),
              (UPoint{810, 10})); // 1000 - 63.5 x 3 = 809.5, and halves go away from zero
    EXPECT_EQ(at(127, 400, 0).y, 410);
    EXPECT_EQ(at(64, 0, 0).x - at(63, 0, 0).x, 3);
    for (int line : {0, 31, 127}) {
        const UPoint top = at(line, 0, 30000);
        const UPoint deep = at(line, 1000, 30000);
        EXPECT_NEAR(deep.x - top.x, 500, 1);
        EXPECT_NEAR(deep.y - top.y, 866, 1);
    }
}

TEST(ForwardConversion, PhasedLinesFanOutFromTheOriginOverTheSector)
{
    // 60 lines over 90 degrees are 1.5 degrees apart; line 0 is at -44.25 degrees; 100 microns a
    // sample.
    const auto at = [](int line, int sample) {
        return qor_utils::GetPixelCoordinatesLD(line, sample, {500, 20}, {100, 100}, 7700000, 0, 0,
                                                &phased, 1540, 60, 0, 0, 0, 0);
    };
    EXPECT_EQ(at(0, 0), (UPoint{500, 20}));
    EXPECT_EQ(at(0, 1000), (UPoint{500 - 698, 20 + 716}));
    EXPECT_EQ(at(59, 1000), (UPoint{500 + 698, 20 + 716}));
}

TEST(ForwardConversion, ExtendedSectorLeavesTheFaceAcrossTheAperture)
{
    const Scene s{phased, 1, 7700000, 1540, 0, 20000, 0, {}, {}, 0, 0, 0};
    const ConversionModel model = ModelOf(s);
    // The edges of the sector of 90 + 20 degrees lie half a line beyond the first and the last
    // line.
    const auto face = model.ToMicrons({0.5, 0});
    EXPECT_NEAR(face.x, 64 * 220 / 2.0, 1e-6);
    EXPECT_NEAR(face.y, 0, 1e-6);
    const auto deep = model.ToMicrons({0.5, 100});
    EXPECT_NEAR(std::atan2(deep.x - face.x, deep.y) / radiansPerMillidegree, 55000, 1e-6);
    EXPECT_NEAR(std::hypot(deep.x - face.x, deep.y), 100 * 100, 1e-6);
}

TEST(ForwardConversion, SteeringTurnsAFanAboutTheOrigin)
{
    const Scene straight{sampleCurved, 241, sampleFrequency, 1540, 0, 0, 0, {}, {}, 0, 0, 0};
    Scene steered = straight;
    steered.steerAngle = 12000;
    for (int line : {0, 77, 240}) {
        const auto a = ModelOf(straight).ToMicrons({static_cast<double>(line), 500});
        const auto b = ModelOf(steered).ToMicrons({static_cast<double>(line), 500});
        EXPECT_NEAR(std::hypot(a.x, a.y), std::hypot(b.x, b.y), 1e-6);
        EXPECT_NEAR(std::atan2(b.x, b.y) - std::atan2(a.x, a.y), 12000 * radiansPerMillidegree,
                    1e-12);
    }
}

TEST(ForwardConversion, ConcaveFaceLiesAboveItsCentre)
{
    ZelProbe concave = sampleCurved;
    concave.radius = -30000;
    concave.elements = 100;
    const auto at = [&](int line) {
        return qor_utils::GetPixelCoordinates(line, 0, {500, 500}, {100, 100}, 7700000, 0, 0,
                                              &concave, 1540, 0, 0, 0, 0);
    };
    EXPECT_LT(at(0).x, at(99).x) << "line 0 is at the left";
    EXPECT_LT(at(0).x, 500);
    EXPECT_NEAR(at(50).y, 200, 1) << "30 mm above the centre";
}

TEST(ForwardConversion, LineOffsetIsAddedToTheLine)
{
    Scene s{linear, 100, 7700000, 1540, 0, 0, 0, {300, 0}, {50, 50}, 0, 0, 0};
    const UPoint expected = Forward(s, 30, 200);
    s.lineOffset = 12;
    EXPECT_EQ(Forward(s, 18, 200), expected);
}

TEST(ForwardConversion, FlipsLastAndOnlyInAnImageWithBothSizes)
{
    Scene s{linear, 100, 7700000, 1540, 10000, 0, 0, {300, 0}, {50, 50}, 640, 480, 0};
    const UPoint plain = Forward(s, 20, 200);
    s.flip = 1;
    EXPECT_EQ(Forward(s, 20, 200), (UPoint{640 - plain.x, plain.y}));
    s.flip = 2;
    EXPECT_EQ(Forward(s, 20, 200), (UPoint{plain.x, 480 - plain.y}));
    s.flip = 3;
    EXPECT_EQ(Forward(s, 20, 200), (UPoint{640 - plain.x, 480 - plain.y}));
    s.height = 0;
    EXPECT_EQ(Forward(s, 20, 200), plain);
}

TEST(ForwardConversion, UnusableInputGivesTheOrigin)
{
    const UPoint origin{123, 45};
    const UPoint scale{100, 100};
    const auto at = [&](const ZelProbe* probe, int frequency, UPoint micronsPerPixel,
                        int speed = 1540) {
        return qor_utils::GetPixelCoordinates(10, 100, origin, micronsPerPixel, frequency, 0, 0,
                                              probe, speed, 0, 0, 0, 0);
    };
    ZelProbe unknown = linear;
    unknown.type = 3;
    ZelProbe flat = sampleCurved;
    flat.radius = 0;
    EXPECT_EQ(at(nullptr, 1000000, scale), origin);
    EXPECT_EQ(at(&unknown, 1000000, scale), origin);
    EXPECT_EQ(at(&flat, 1000000, scale), origin);
    EXPECT_EQ(at(&linear, 0, scale), origin);
    EXPECT_EQ(at(&linear, -5, scale), origin);
    EXPECT_EQ(at(&linear, 1000000, scale, 0), origin);
    EXPECT_EQ(at(&linear, 1000000, {0, 0}), origin);
    EXPECT_EQ(at(&linear, 1000000, {0, 100}).x, origin.x);
    EXPECT_NE(at(&linear, 1000000, {0, 100}).y, origin.y);
}

TEST(ForwardConversion, AbsurdInputStopsAtTheLimits)
{
    const auto at = [](int flip) {
        return qor_utils::GetPixelCoordinates(INT_MAX, INT_MAX, {INT_MAX, INT_MAX}, {1, 1}, 1,
                                              INT_MIN, 0, &linear, INT_MAX, INT_MAX, INT_MIN,
                                              INT_MIN, flip);
    };
    EXPECT_EQ(at(0), UPoint(INT_MIN, INT_MAX));
    EXPECT_EQ(at(3), UPoint(0, INT_MIN));
    const UPoint deep = qor_utils::GetPixelCoordinates(0, INT_MAX, {0, 0}, {1, 1}, 1, 0, 0, &linear,
                                                       INT_MAX, 0, 0, 0, 0);
    EXPECT_EQ(deep.y, INT_MAX);
}

TEST(SampleSize, IsTheWayThereAndBack)
{
    EXPECT_DOUBLE_EQ(qor_utils::GetSampleSize(7700000, 1540), 100.0);
    EXPECT_DOUBLE_EQ(qor_utils::GetSampleSize(1000000, 3000), 1500.0) << "no 32-bit limit";
    EXPECT_EQ(qor_utils::GetSampleSize(0, 1540), 0.0);
}

TEST(RectangleConversion, ScalesElementsToLinesAndKeepsSamples)
{
    URect out;
    qor_utils::ConvertRect({10, 5, 128, 500}, 256, 128, out);
    EXPECT_EQ(out, (URect{20, 5, 256, 500}));
    qor_utils::ConvertRect({-3, 5, 7, 500}, 1, 2, out);
    EXPECT_EQ(out, (URect{-1, 5, 3, 500})) << "truncated toward zero";
    qor_utils::ConvertRect({INT_MIN, 1, INT_MAX, 2}, INT_MAX, 1, out);
    EXPECT_EQ(out, (URect{INT_MIN, 1, INT_MAX, 2}));
    qor_utils::ConvertRect({1, 2, 3, 4}, 10, 0, out);
    EXPECT_EQ(out, URect{});
}
