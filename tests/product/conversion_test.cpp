#include <qor_imgproc/FrameMap.h>
#include <qor_imgproc/PixelConverter.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/ConversionModel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

using qor_utils::ConversionModel;
using qor_utils::RadiansPerMillidegree;

namespace {

constexpr ZelProbe SampleCurved{0, 188, 292, 26400, 0}; // the probe of the committed curved sample
constexpr int SampleFrequency = 14997059;
constexpr int SampleLines = 241;

constexpr ZelProbe Linear{1, 128, 300, 0, 0};
constexpr ZelProbe Phased{2, 64, 220, 0, 90000};

struct Scene
{
    ZelProbe probe;
    int lines = 0; // over the aperture
    int samplingFreq = 0;
    int soundSpeed = 1540;
    int scanA = 0;
    int scanB = 0;
    int scanC = 0;
    UPoint origin;
    UPoint scale;
    int width = 0;
    int height = 0;
    int flip = 0;
};

UPoint Forward(const Scene& s, int line, int sample)
{
    return qor_utils::GetPixelCoordinatesLD(line, sample, s.origin, s.scale, s.samplingFreq, s.scanA, s.scanB, &s.probe,
                                            s.soundSpeed, s.lines, s.scanC, s.width, s.height, s.flip);
}

UPoint Unflip(const Scene& s, UPoint p)
{
    if (s.flip & 1) p.x = s.width - p.x;
    if (s.flip & 2) p.y = s.height - p.y;
    return p;
}

ScanPixel Precise(const Scene& s, const UPoint& p, const URect& rect = {})
{
    ScanPixel out;
    const double a = s.scanA * RadiansPerMillidegree;
    ScanConverter::GetPreciseUSCoordinates(p.x, p.y, &out.line, &out.sample, &out.lineFraction, &out.sampleFraction,
                                           rect, &s.probe, s.soundSpeed, s.scanA, s.scanB, s.lines, s.samplingFreq,
                                           s.origin, s.scale, std::sin(a), std::cos(a), false);
    return out;
}

double LineOf(const ScanPixel& p)
{
    return p.line + p.lineFraction / 16.0;
}
double SampleOf(const ScanPixel& p)
{
    return p.sample + p.sampleFraction / 16.0;
}

ConversionModel ModelOf(const Scene& s)
{
    const double a = s.scanA * RadiansPerMillidegree;
    return {&s.probe, s.lines, s.samplingFreq, s.soundSpeed, s.scanB, std::sin(a), std::cos(a)};
}

class Random
{
public:
    int Int(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    double Real(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }

private:
    std::mt19937 m_engine{20240917};
};

Scene RandomScene(Random& random, int type)
{
    Scene s;
    s.probe = {type, random.Int(2, 300), random.Int(100, 600), random.Int(8000, 80000), random.Int(10000, 120000)};
    // A fan of less than a full turn, and of less than half a turn for a concave face.
    const double turn = static_cast<double>(s.probe.elements) * s.probe.pitch / s.probe.radius;
    if (type == 0 && turn > 6) s.probe.elements = std::max(1, s.probe.elements / 4);
    if (type == 0 && turn < 3 && random.Int(0, 1)) s.probe.radius = -s.probe.radius;
    s.lines = random.Int(1, 512);
    s.samplingFreq = random.Int(1000000, 20000000);
    s.soundSpeed = random.Int(1000, 2000);
    s.scanA = random.Int(-30000, 30000);
    if (type == 2) s.scanB = random.Int(0, 1) * random.Int(1, 40000);
    s.scanC = random.Int(-20, 20);
    s.width = random.Int(100, 2000);
    s.height = random.Int(100, 2000);
    s.origin = {random.Int(-500, 2000), random.Int(-500, 2000)};
    s.flip = random.Int(0, 3);
    return s;
}

// How far apart neighbouring lines and samples are at a position, in microns: the smaller of the two.
double Fineness(const Scene& s, double line, double sample)
{
    const ConversionModel model = ModelOf(s);
    const auto apart = [&](double dl, double ds) {
        const auto a = model.ToMicrons({line, sample});
        const auto b = model.ToMicrons({line + dl, sample + ds});
        return std::hypot(a.x - b.x, a.y - b.y);
    };
    double skew = std::cos(s.probe.type == 1 ? s.scanA * RadiansPerMillidegree : 0.0);
    if (s.scanB != 0) {
        const double sector = (s.probe.sectorAngle + s.scanB) * RadiansPerMillidegree;
        skew = std::cos(std::fabs(line - (s.lines - 1) / 2.0) * sector / s.lines);
    }
    return std::min(apart(1e-3, 0), apart(0, 1e-3)) * 1e3 * skew;
}

std::string Describe(const Scene& s)
{
    return "type " + std::to_string(s.probe.type) + " elements " + std::to_string(s.probe.elements) + " radius " +
           std::to_string(s.probe.radius) + " lines " + std::to_string(s.lines) + " scanA " + std::to_string(s.scanA) +
           " scanB " + std::to_string(s.scanB) + " flip " + std::to_string(s.flip);
}

} // namespace

namespace {

// The curved sample's published geometry: first and last sample, sector; line 120 of 241 points straight down.
constexpr double FirstRadius = 26400; // microns
constexpr double LastRadius = 131500;
constexpr double Sector = 3.14159265358979323846 / 2 + 0.5;

qor_utils::MicronPoint Published(int line, int sample)
{
    const double t = (line - 120) * Sector / 240;
    const double r = FirstRadius + sample * (LastRadius - FirstRadius) / 2047;
    return {r * std::sin(t), r * std::cos(t)};
}

// The committed recording's own description of itself.
Scene CommittedSample()
{
    std::ifstream file(SAMPLE_IMAGES "/curved.cine", std::ios::binary);
    std::array<std::int32_t, 19> header{};
    file.read(reinterpret_cast<char*>(header.data()), sizeof header);
    EXPECT_TRUE(file) << SAMPLE_IMAGES "/curved.cine";
    Scene s;
    s.samplingFreq = header[5];
    s.soundSpeed = header[6];
    s.probe = {header[7], header[8], header[9], header[10], header[11]};
    s.scanA = header[13];
    s.scanB = header[14];
    s.scanC = header[15];
    s.lines = header[16];
    return s;
}

void ExpectPublishedCoordinates(Scene s)
{
    s.origin = {640, -100};
    s.scale = {100, 100};
    double worst = 0;
    for (int line = 0; line < SampleLines; ++line)
        for (int sample = 0; sample < 2048; ++sample) {
            const auto expected = Published(line, sample);
            const auto m = ModelOf(s).ToMicrons({static_cast<double>(line), static_cast<double>(sample)});
            worst = std::max({worst, std::fabs(m.x - expected.x), std::fabs(m.y - expected.y)});
            const UPoint p = Forward(s, line, sample);
            // Half a pixel of rounding and the difference of the two descriptions.
            ASSERT_NEAR(p.x, 640 + expected.x / 100, 0.55);
            ASSERT_NEAR(p.y, -100 + expected.y / 100, 0.55);
        }
    EXPECT_LT(worst, 5) << "microns: a twentieth of a pixel";
}

} // namespace

TEST(ForwardConversion, ReproducesThePublishedCoordinatesOfTheCurvedSample)
{
    ExpectPublishedCoordinates({SampleCurved, SampleLines, SampleFrequency, 1540, 0, 0, 0, {}, {}, 0, 0, 0});
}

TEST(ForwardConversion, ReproducesThemFromTheCommittedRecordingsDescription)
{
    ExpectPublishedCoordinates(CommittedSample());
}

TEST(ForwardConversion, LinearLinesAreParallelAndShearedBySteering)
{
    const UPoint scale{100, 100};
    const auto at = [&](int line, int sample, int steer) {
        return qor_utils::GetPixelCoordinates(line, sample, {1000, 10}, scale, 7700000, steer, 0, &Linear, 1540, 0, 0,
                                              0, 0);
    };
    // 100 microns a sample; 3 pixels an element; the middle of 128 elements is between 63 and 64.
    EXPECT_EQ(at(0, 0, 0), (UPoint{810, 10})); // 1000 - 63.5 x 3 = 809.5, and halves go away from zero
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
    // 60 lines over 90 degrees are 1.5 degrees apart; line 0 is at -44.25 degrees; 100 microns a sample.
    const auto at = [](int line, int sample) {
        return qor_utils::GetPixelCoordinatesLD(line, sample, {500, 20}, {100, 100}, 7700000, 0, 0, &Phased, 1540, 60,
                                                0, 0, 0, 0);
    };
    EXPECT_EQ(at(0, 0), (UPoint{500, 20}));
    EXPECT_EQ(at(0, 1000), (UPoint{500 - 698, 20 + 716}));
    EXPECT_EQ(at(59, 1000), (UPoint{500 + 698, 20 + 716}));
}

TEST(ForwardConversion, ExtendedSectorLeavesTheFaceAcrossTheAperture)
{
    const Scene s{Phased, 1, 7700000, 1540, 0, 20000, 0, {}, {}, 0, 0, 0};
    const ConversionModel model = ModelOf(s);
    // The edges of the sector of 90 + 20 degrees lie half a line beyond the first and the last line.
    const auto face = model.ToMicrons({0.5, 0});
    EXPECT_NEAR(face.x, 64 * 220 / 2.0, 1e-6);
    EXPECT_NEAR(face.y, 0, 1e-6);
    const auto deep = model.ToMicrons({0.5, 100});
    EXPECT_NEAR(std::atan2(deep.x - face.x, deep.y) / RadiansPerMillidegree, 55000, 1e-6);
    EXPECT_NEAR(std::hypot(deep.x - face.x, deep.y), 100 * 100, 1e-6);
}

TEST(ForwardConversion, SteeringTurnsAFanAboutTheOrigin)
{
    const Scene straight{SampleCurved, 241, SampleFrequency, 1540, 0, 0, 0, {}, {}, 0, 0, 0};
    Scene steered = straight;
    steered.scanA = 12000;
    for (int line : {0, 77, 240}) {
        const auto a = ModelOf(straight).ToMicrons({static_cast<double>(line), 500});
        const auto b = ModelOf(steered).ToMicrons({static_cast<double>(line), 500});
        EXPECT_NEAR(std::hypot(a.x, a.y), std::hypot(b.x, b.y), 1e-6);
        EXPECT_NEAR(std::atan2(b.x, b.y) - std::atan2(a.x, a.y), 12000 * RadiansPerMillidegree, 1e-12);
    }
}

TEST(ForwardConversion, ConcaveFaceLiesAboveItsCentre)
{
    ZelProbe concave = SampleCurved;
    concave.radius = -30000;
    concave.elements = 100;
    const auto at = [&](int line) {
        return qor_utils::GetPixelCoordinates(line, 0, {500, 500}, {100, 100}, 7700000, 0, 0, &concave, 1540, 0, 0, 0,
                                              0);
    };
    EXPECT_LT(at(0).x, at(99).x) << "line 0 is at the left";
    EXPECT_LT(at(0).x, 500);
    EXPECT_NEAR(at(50).y, 200, 1) << "30 mm above the centre";
}

TEST(ForwardConversion, LineOffsetIsAddedToTheLine)
{
    Scene s{Linear, 100, 7700000, 1540, 0, 0, 0, {300, 0}, {50, 50}, 0, 0, 0};
    const UPoint expected = Forward(s, 30, 200);
    s.scanC = 12;
    EXPECT_EQ(Forward(s, 18, 200), expected);
}

TEST(ForwardConversion, FlipsLastAndOnlyInAnImageWithBothSizes)
{
    Scene s{Linear, 100, 7700000, 1540, 10000, 0, 0, {300, 0}, {50, 50}, 640, 480, 0};
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
    const auto at = [&](const ZelProbe* probe, int frequency, UPoint micronsPerPixel, int speed = 1540) {
        return qor_utils::GetPixelCoordinates(10, 100, origin, micronsPerPixel, frequency, 0, 0, probe, speed, 0, 0, 0,
                                              0);
    };
    ZelProbe unknown = Linear;
    unknown.type = 3;
    ZelProbe flat = SampleCurved;
    flat.radius = 0;
    EXPECT_EQ(at(nullptr, 1000000, scale), origin);
    EXPECT_EQ(at(&unknown, 1000000, scale), origin);
    EXPECT_EQ(at(&flat, 1000000, scale), origin);
    EXPECT_EQ(at(&Linear, 0, scale), origin);
    EXPECT_EQ(at(&Linear, -5, scale), origin);
    EXPECT_EQ(at(&Linear, 1000000, scale, 0), origin);
    EXPECT_EQ(at(&Linear, 1000000, {0, 0}), origin);
    EXPECT_EQ(at(&Linear, 1000000, {0, 100}).x, origin.x);
    EXPECT_NE(at(&Linear, 1000000, {0, 100}).y, origin.y);
}

TEST(ForwardConversion, AbsurdInputStopsAtTheLimits)
{
    const UPoint p = qor_utils::GetPixelCoordinates(INT_MAX, INT_MAX, {INT_MAX, INT_MAX}, {1, 1}, 1, INT_MIN, 0,
                                                    &Linear, INT_MAX, INT_MAX, INT_MIN, INT_MIN, 3);
    EXPECT_TRUE(p == p);
    const UPoint deep =
        qor_utils::GetPixelCoordinates(0, INT_MAX, {0, 0}, {1, 1}, 1, 0, 0, &Linear, INT_MAX, 0, 0, 0, 0);
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

TEST(InverseConversion, MapsEveryPixelBackWithinOneLineAndOneSample)
{
    Random random;
    int tried = 0;
    while (tried < 60000) {
        Scene s = RandomScene(random, tried % 3);
        const int line = random.Int(0, s.lines - 1) - s.scanC;
        const int sample = random.Int(0, 4000);
        if (s.probe.radius < 0 && sample * qor_utils::GetSampleSize(s.samplingFreq, s.soundSpeed) > -s.probe.radius)
            continue; // behind the centre of a concave face the lines cross
        const double fine = Fineness(s, line + s.scanC, sample);
        if (fine < 1) continue;
        s.scale = {random.Int(1, static_cast<int>(fine)), random.Int(1, static_cast<int>(fine))};
        const ScanPixel back = Precise(s, Unflip(s, Forward(s, line, sample)));
        ASSERT_NEAR(LineOf(back), line + s.scanC, 1) << Describe(s) << " line " << line << " sample " << sample;
        ASSERT_NEAR(SampleOf(back), sample, 1) << Describe(s) << " line " << line << " sample " << sample;
        ++tried;
    }
}

TEST(InverseConversion, ReachesASixteenthWherePixelsAreFineEnough)
{
    Random random;
    for (int i = 0; i < 3000; ++i) {
        Scene s = RandomScene(random, i % 3);
        s.scale = {1, 1};
        s.soundSpeed = 1540;
        s.samplingFreq = 7700000; // 100 pixels a sample
        const int line = random.Int(0, s.lines - 1) - s.scanC;
        const int sample = random.Int(2000, 4000);
        if (Fineness(s, line + s.scanC, sample) < 50 || s.probe.radius < 0) continue;
        const ScanPixel back = Precise(s, Unflip(s, Forward(s, line, sample)));
        ASSERT_NEAR(LineOf(back), line + s.scanC, 1 / 16.0) << Describe(s);
        ASSERT_NEAR(SampleOf(back), sample, 1 / 16.0) << Describe(s);
    }
}

TEST(Conversion, PixelDistanceAlongALineIsTheDepthDifference)
{
    Random random;
    for (int i = 0; i < 30000; ++i) {
        Scene s = RandomScene(random, i % 3);
        const int scale = random.Int(20, 400);
        s.scale = {scale, scale};
        const int line = random.Int(0, s.lines - 1);
        const int a = random.Int(0, 4000);
        const int b = random.Int(0, 4000);
        const UPoint p = Forward(s, line, a);
        const UPoint q = Forward(s, line, b);
        const double pixels = std::hypot(static_cast<double>(p.x) - q.x, static_cast<double>(p.y) - q.y);
        const double depth = std::abs(a - b) * qor_utils::GetSampleSize(s.samplingFreq, s.soundSpeed);
        // A pixel in each direction: both ends are rounded.
        ASSERT_NEAR(pixels, depth / scale, 1.4143) << Describe(s);
    }
}

TEST(InverseConversion, CountsFromTheCornerOfARectangle)
{
    const Scene s{SampleCurved, SampleLines, SampleFrequency, 1540, 0, 0, 0, {640, -100}, {100, 100}, 0, 0, 0};
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
    const Scene good{SampleCurved, SampleLines, SampleFrequency, 1540, 0, 0, 0, {640, -100}, {100, 100}, 0, 0, 0};
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
    EXPECT_TRUE(with([](Scene& s) { s.probe = Linear, s.scanA = 120000; }));
}

TEST(InverseConversion, TakesNoProbeNoDestinationsAndNoNumbers)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    int line = 7;
    int sample = 7;
    const auto call = [&](const ZelProbe* probe, double sinSteer, double cosSteer) {
        ScanConverter::GetPreciseUSCoordinates(1, 2, &line, &sample, nullptr, nullptr, {}, probe, 1540, 0, 0, 100,
                                               1000000, {0, 0}, {10, 10}, sinSteer, cosSteer, true);
    };
    call(nullptr, 0, 1);
    EXPECT_EQ(line, -1);
    EXPECT_EQ(sample, -1);
    line = sample = 7;
    call(&SampleCurved, nan, nan);
    EXPECT_EQ(line, -1);
    EXPECT_EQ(sample, -1);
    line = sample = 7;
    call(&Linear, std::numeric_limits<double>::infinity(), 1);
    EXPECT_EQ(line, -1);
    EXPECT_EQ(sample, -1);
}

TEST(InverseConversion, SurvivesAbsurdInput)
{
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, 1000, INT_MAX - 1, INT_MAX};
    Random random;
    const auto any = [&] { return extremes[random.Int(0, 7)]; };
    for (int i = 0; i < 100000; ++i) {
        Scene s;
        s.probe = {random.Int(0, 2), any(), any(), any(), any()};
        s.lines = any();
        s.samplingFreq = any();
        s.soundSpeed = any();
        s.scanA = any();
        s.scanB = any();
        s.origin = {any(), any()};
        s.scale = {any(), any()};
        const ScanPixel p = Precise(s, {any(), any()}, {any(), any(), any(), any()});
        ASSERT_LT(p.lineFraction, 16u);
        ASSERT_LT(p.sampleFraction, 16u);
    }
}

TEST(PixelConverter, NeverPromisesMoreOutsidePixelsThanThereAre)
{
    Random random;
    for (int i = 0; i < 3000; ++i) {
        Scene s = RandomScene(random, i % 3);
        s.scale = {random.Int(20, 400), random.Int(20, 400)};
        const double a = s.scanA * RadiansPerMillidegree;
        const URect corner{random.Int(0, 1) * random.Int(0, 50), random.Int(0, 1) * random.Int(0, 500), 0, 0};
        const PixelConverter converter(corner, &s.probe, s.soundSpeed, s.scanB, s.lines, s.samplingFreq, s.origin,
                                       s.scale, std::sin(a), std::cos(a));
        const int lineEnd = random.Int(1, s.lines);
        const int sampleEnd = random.Int(1, 3000);
        const int x = random.Int(0, s.width);
        const int y = random.Int(0, s.height);
        const auto found = converter.TestUpwards(x, y, lineEnd, sampleEnd);
        for (int k = 1; k <= std::min(found.pixelsAbove, 2000); ++k) {
            const ScanPixel p = converter.At(x, y - k);
            ASSERT_FALSE(p.line > 0 && p.line < lineEnd && p.sample > 0 && p.sample < sampleEnd) << Describe(s);
            ASSERT_TRUE(k > found.pixelsPastLines || p.line >= lineEnd) << Describe(s);
        }
    }
}

namespace {

// Bilinear interpolation pixel by pixel in double precision, for comparison.
double PlainPixel(const Scene& s, const std::vector<unsigned char>& frame, int samples, int x, int y)
{
    const UPoint p = Unflip(s, {x, y});
    const auto scan = ModelOf(s).ToScan(
        {(static_cast<double>(p.x) - s.origin.x) * s.scale.x, (static_cast<double>(p.y) - s.origin.y) * s.scale.y});
    if (!(scan.line >= 0 && scan.line <= s.lines - 1 && scan.sample >= 0 && scan.sample <= samples - 1)) return -1;
    const int l = std::min(static_cast<int>(scan.line), std::max(0, s.lines - 2));
    const int n = std::min(static_cast<int>(scan.sample), std::max(0, samples - 2));
    const auto grey = [&](int line, int sample) {
        line = std::min(line, s.lines - 1);
        sample = std::min(sample, samples - 1);
        return static_cast<double>(frame[static_cast<std::size_t>(line) * static_cast<std::size_t>(samples) +
                                         static_cast<std::size_t>(sample)]);
    };
    const double fl = scan.line - l;
    const double fs = scan.sample - n;
    return (grey(l, n) * (1 - fs) + grey(l, n + 1) * fs) * (1 - fl) +
           (grey(l + 1, n) * (1 - fs) + grey(l + 1, n + 1) * fs) * fl;
}

FrameGeometry GeometryOf(const Scene& s, int samples)
{
    return {&s.probe, s.lines,  samples, s.samplingFreq, s.soundSpeed, s.scanA,
            s.scanB,  s.origin, s.scale, s.width,        s.height,     s.flip};
}

} // namespace

TEST(FrameConversion, IsTheBilinearInterpolationOfTheFrame)
{
    Random random;
    for (int i = 0; i < 60; ++i) {
        Scene s = RandomScene(random, i % 3);
        s.width = random.Int(1, 200);
        s.height = random.Int(1, 150);
        s.origin = {s.width / 2, s.height / 8};
        s.scale = {random.Int(200, 800), random.Int(200, 800)};
        const int samples = random.Int(1, 600);
        std::vector<unsigned char> frame(static_cast<std::size_t>(s.lines) * static_cast<std::size_t>(samples));
        for (auto& byte : frame)
            byte = static_cast<unsigned char>(random.Int(0, 255));
        std::vector<unsigned char> image(static_cast<std::size_t>(s.width) * static_cast<std::size_t>(s.height), 1);
        ASSERT_TRUE(ScanConverter::ConvertFrame(GeometryOf(s, samples), frame.data(), image.data(), 77));
        int edge = 0;
        for (int y = 0; y < s.height; ++y)
            for (int x = 0; x < s.width; ++x) {
                const int grey = image[static_cast<std::size_t>(y) * static_cast<std::size_t>(s.width) +
                                       static_cast<std::size_t>(x)];
                const double plain = PlainPixel(s, frame, samples, x, y);
                if (std::fabs((plain < 0 ? 77 : plain) - grey) > 2) ++edge;
            }
        // Only a pixel within a millionth of the frame's very edge may fall on the other side of it.
        EXPECT_LE(edge, s.height / 50 + 1) << Describe(s);
    }
}

TEST(FrameConversion, RefusesWhatHasNoImage)
{
    const Scene s{Linear, 10, 7700000, 1540, 0, 0, 0, {5, 0}, {100, 100}, 10, 10, 0};
    std::vector<unsigned char> frame(1000);
    std::vector<unsigned char> image(100, 9);
    const FrameGeometry good = GeometryOf(s, 100);
    EXPECT_TRUE(FrameMap(good).Valid());
    EXPECT_FALSE(ScanConverter::ConvertFrame(good, nullptr, image.data()));
    EXPECT_FALSE(ScanConverter::ConvertFrame(good, frame.data(), nullptr));
    const auto refused = [&](auto change) {
        FrameGeometry g = good;
        change(g);
        return !ScanConverter::ConvertFrame(g, frame.data(), image.data());
    };
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.probe = nullptr; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.width = 0; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.height = -4; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.width = INT_MAX; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.width = g.height = 46000; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.lines = 0; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.samples = INT_MAX; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.samplingFreq = 0; }));
    EXPECT_TRUE(refused([](FrameGeometry& g) { g.micronsPerPixel.y = 0; }));
    EXPECT_EQ(std::count(image.begin(), image.end(), 9), 100) << "nothing is written";
}
