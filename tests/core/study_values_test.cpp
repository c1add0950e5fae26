// Measured values are compared with numbers that are known beforehand.
#include "image/ImagingParameters.h"
#include "study/FrameScale.h"
#include "study/MarkValues.h"
#include "study/SpectralPoints.h"
#include "StudySamples.h"

#include <gtest/gtest.h>
#include <test_support/Random.h>
#include <Utils_Statics/CDopplerScaling.h>

#include <string>

using namespace study_samples;

namespace {

// Far below what any probe resolves; only the rounding of the conversions is left.
constexpr double exact = 1e-9;

std::vector<double> NumbersOf(const Mark& mark, const Acquisition& acquisition)
{
    std::vector<double> numbers;
    for (const MarkValue& value : ValuesOf(mark, acquisition))
        numbers.push_back(value.value);
    return numbers;
}

std::vector<double> Measured(const Acquisition& acquisition, MarkKind kind,
                             const std::vector<MarkPoint>& places)
{
    return NumbersOf(MarkThrough(acquisition, kind, places), acquisition);
}

void ExpectNear(const std::vector<double>& found, const std::vector<double>& expected,
                double tolerance = exact)
{
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i)
        EXPECT_NEAR(found[i], expected[i], tolerance) << "value " << i;
}

// A place on an ellipse about the middle that is turned by 30 degrees.
MarkPoint OnEllipse(double a, double b, double angle)
{
    const double turn = std::numbers::pi / 6;
    const double x = a * std::cos(angle);
    const double y = b * std::sin(angle);
    return {x * std::cos(turn) - y * std::sin(turn), x * std::sin(turn) + y * std::cos(turn)};
}

// The circumference by its integral, which the trapezoidal rule gives to all digits.
double EllipseCircumference(double a, double b)
{
    constexpr int steps = 1000;
    double sum = 0;
    for (int i = 0; i < steps; ++i) {
        const double angle = 2 * std::numbers::pi * i / steps;
        sum += std::hypot(a * std::sin(angle), b * std::cos(angle));
    }
    return sum * 2 * std::numbers::pi / steps;
}

// A spectral display of 200 pixels and 256 bins, over 3.08 m/s: 4 kHz x 1540 m/s / (2 x 1 MHz).
class SpectralTest : public testing::Test
{
protected:
    SpectralTest()
    {
        CDopplerScaling::SetPWPRP(250);
        CDopplerScaling::SetPWFreq(1'000'000);
        CDopplerScaling::SetPWFFT(bins);
        CDopplerScaling::SetPWVesselAngle(0);
        CDopplerScaling::SetVecDopScaleFactor(1.0);
        CDopplerScaling::SetBaselineStartPos(0.0);
        CDopplerScaling::SetPWDisplayHeight(height);
    }

    static constexpr int bins = 256;
    static constexpr int height = 200;
    static constexpr double span = 3.08;
};

} // namespace

TEST(StudyValuesTest, ADistanceIsThatOfTheBodyOnEveryProbe)
{
    for (const Acquisition& probe : AllProbes())
        ExpectNear(Measured(probe, MarkKind::distance, {{-15, -20}, {15, 20}}), {50});
}

TEST(StudyValuesTest, AnAngleIsThatAtTheSecondPoint)
{
    for (const Acquisition& probe : AllProbes()) {
        ExpectNear(Measured(probe, MarkKind::angle, {{20, 0}, {0, 0}, {0, -9}}), {90}, 1e-7);
        ExpectNear(Measured(probe, MarkKind::angle, {{5, 5}, {0, 0}, {7, 0}}), {45}, 1e-7);
        ExpectNear(Measured(probe, MarkKind::angle, {{-20, 0}, {0, 0}, {20, 0}}), {180}, 1e-5);
        const double small = std::tan(Radians(1)); // a thousandth of a degree
        ExpectNear(Measured(probe, MarkKind::angle, {{20, 0}, {0, 0}, {20, 20 * small}}), {0.001},
                   1e-7);
    }
}

TEST(StudyValuesTest, AnEllipseHasItsCircumferenceAndArea)
{
    // The formula of the circumference is off by 1e-9 at this axis ratio.
    constexpr double a = 20, b = 10;
    for (const Acquisition& probe : AllProbes())
        ExpectNear(Measured(probe, MarkKind::ellipse,
                            {OnEllipse(a, b, 0), OnEllipse(a, b, std::numbers::pi),
                             OnEllipse(a, b, std::numbers::pi / 2)}),
                   {EllipseCircumference(a, b), std::numbers::pi * a * b / 100}, 1e-7);
}

TEST(StudyValuesTest, AnEllipseIsMeasuredFromEitherOfItsAxes)
{
    for (const double b : {10.0, 20.0, 35.0})
        ExpectNear(Measured(Phased(), MarkKind::ellipse, {{-20, 0}, {20, 0}, {7, b}}),
                   {EllipseCircumference(20, b), std::numbers::pi * 20 * b / 100}, 1e-4);
    ExpectNear(Measured(Phased(), MarkKind::ellipse, {{-20, 0}, {20, 0}, {7, 0}}), {80, 0}, 0.04);
}

TEST(StudyValuesTest, ATraceIsClosed)
{
    for (const Acquisition& probe : AllProbes())
        ExpectNear(Measured(probe, MarkKind::trace, {{0, 0}, {30, 0}, {30, 40}}), {120, 6});
}

TEST(StudyValuesTest, ATraceOfACircleHasItsCircumferenceAndArea)
{
    constexpr int points = 720;
    std::vector<MarkPoint> circle;
    for (int i = 0; i < points; ++i)
        circle.push_back({10 * std::cos(2 * std::numbers::pi * i / points),
                          10 * std::sin(2 * std::numbers::pi * i / points)});
    // The chords are shorter than their arcs by (pi / n)^2 / 6, the area by four times that.
    const double share = std::pow(std::numbers::pi / points, 2) / 6;
    for (const Acquisition& probe : AllProbes())
        ExpectNear(Measured(probe, MarkKind::trace, circle),
                   {20 * std::numbers::pi * (1 - share), std::numbers::pi * (1 - 4 * share)}, 1e-7);
}

TEST(StudyValuesTest, ARectangleHasItsSidesAndArea)
{
    for (const Acquisition& probe : AllProbes())
        ExpectNear(Measured(probe, MarkKind::rectangle, {{15, 20}, {-15, -20}}), {30, 40, 12});
}

TEST(StudyValuesTest, AStepMayBeSmallerThanASample)
{
    Mark mark;
    mark.points = {{10, 1000}, {10, 2000}};
    for (const Acquisition& probe : {Linear(), Curved(), Phased()}) {
        mark.points[1].y = 2000;
        const double before = NumbersOf(mark, probe).at(0);
        mark.points[1].y += 0.001;
        EXPECT_NEAR(NumbersOf(mark, probe).at(0) - before, sampleSize / 1000, exact);
    }
}

TEST(StudyValuesTest, AMarkThatIsMovedKeepsItsValues)
{
    for (const Acquisition& probe : AllProbes()) {
        Mark mark = MarkThrough(probe, MarkKind::trace, {{0, 0}, {10, 2}, {3, 15}});
        const std::vector<double> before = NumbersOf(mark, probe);
        const MarkPoint from = FrameScale(probe).ToMillimetres(mark.points[0]);
        ASSERT_TRUE(MovePoints(mark, probe, {7.5, -12.25}));
        ExpectNear(NumbersOf(mark, probe), before);
        const MarkPoint to = FrameScale(probe).ToMillimetres(mark.points[0]);
        EXPECT_NEAR(to.x - from.x, 7.5, exact);
        EXPECT_NEAR(to.y - from.y, -12.25, exact);
    }
}

// The image rounds both ends to pixels, so the lengths differ by less than two of them.
TEST(StudyValuesTest, AgreeWithTheImageInEverySizeAndOrientation)
{
    test_support::Random random(17);
    for (const Acquisition& probe : {Linear(), Curved(), Phased()}) {
        CineDescription cine;
        cine.stream = probe.stream;
        for (const int width : {300, 1200}) {
            const Orientation orientation{random.Int(0, 1) != 0, random.Int(0, 1) != 0,
                                          random.Int(0, 3)};
            const ImagingParameters image = FitImage(cine, CSize(width, width), orientation);
            for (int i = 0; i < 100; ++i) {
                const CPoint a(random.Int(0, lines - 1), random.Int(0, 5999));
                const CPoint b(random.Int(0, lines - 1), random.Int(0, 5999));
                Mark mark;
                mark.points = {{static_cast<double>(a.x), static_cast<double>(a.y)},
                               {static_cast<double>(b.x), static_cast<double>(b.y)}};
                EXPECT_NEAR(NumbersOf(mark, probe).at(0),
                            image.Millimetres(image.Pixel(a.x, a.y), image.Pixel(b.x, b.y)),
                            2 * image.micronsPerPixel.x / 1000.0);
            }
        }
    }
}

TEST(StudyValuesTest, WithoutAGeometryThereAreNone)
{
    const Mark mark = MarkThrough(Linear(), MarkKind::distance, {{0, 0}, {1, 1}});
    EXPECT_TRUE(ValuesOf(mark, Acquisition()).empty());
    EXPECT_TRUE(ValuesOf(On(L"O9", mark), StudyContent()).empty());
    Mark moved = mark;
    EXPECT_FALSE(MovePoints(moved, Acquisition(), {1, 1}));
    EXPECT_EQ(moved, mark);
}

TEST(StudyValuesTest, WithoutAnExtentThereAreNone)
{
    EXPECT_TRUE(Measured(Curved(), MarkKind::angle, {{0, 0}, {0, 0}, {1, 1}}).empty());
    EXPECT_TRUE(Measured(Curved(), MarkKind::ellipse, {{0, 0}, {0, 0}, {1, 1}}).empty());
    EXPECT_TRUE(ValuesOf(StripMark(MarkKind::heartRate, {{1, 0}, {1, 1}}), Acquisition()).empty());
    EXPECT_TRUE(ValuesOf(StripMark(MarkKind::flow, {{1, 0}, {1, 1}}), Acquisition()).empty());
    EXPECT_TRUE(ValuesOf(StripMark(MarkKind::time, {{1, 0}}), Acquisition()).empty());
}

TEST(StudyValuesTest, TheStripNeedsNoGeometry)
{
    const auto values = [](MarkKind kind, const std::vector<MarkPoint>& points) {
        return NumbersOf(StripMark(kind, points), Acquisition());
    };
    ExpectNear(values(MarkKind::velocity, {{0.5, -0.75}}), {-0.75});
    ExpectNear(values(MarkKind::time, {{1.5, 0.2}, {0.25, 0.7}}), {1.25});
    ExpectNear(values(MarkKind::heartRate, {{0.2, 1}, {1.0, 1}}), {75});
    ExpectNear(values(MarkKind::heartRate, {{0, 1}, {0.7, 1}, {1.7, 1}, {2.4, 1}}), {75});
    ExpectNear(values(MarkKind::flow, {{0, 0}, {0.1, 1}, {0.3, 0}}), {1, 0.5, 1});
    ExpectNear(values(MarkKind::flow, {{0, 0.25}, {1, -1.25}, {2, 0.25}}), {-1.25, -0.5, -1.25});
}

TEST_F(SpectralTest, AVelocityIsThatOfItsHeight)
{
    EXPECT_NEAR(VelocityAt(height / 2.0), 0, exact);
    EXPECT_NEAR(VelocityAt(height), span / 2, exact);
    EXPECT_NEAR(VelocityAt(0), -span / 2, exact);
    EXPECT_NEAR(PixelOf(VelocityAt(33.25)), 33.25, exact);
    CDopplerScaling::SetPWVesselAngle(60'000);
    EXPECT_NEAR(VelocityAt(height), span, 1e-8);
}

TEST_F(SpectralTest, TheBaselineChangesNoVelocityOfATrace)
{
    unsigned char block[] = {128, 192, 255};
    spectralTraceData traces;
    traces.setData(block, 3, 1);
    const auto before = TracePoints(traces, eTraceEnvelopeForward, 0, 3, 0.01);
    CDopplerScaling::SetBaselineStartPos(-40);
    EXPECT_EQ(TracePoints(traces, eTraceEnvelopeForward, 0, 3, 0.01), before);
    ASSERT_EQ(before.size(), 3u);
    EXPECT_NEAR(before[1].y, span / 4, exact);
    EXPECT_NEAR(before[2].x, 0.02, exact);
}

TEST_F(SpectralTest, AFlowOfKnownTruthIsMeasuredFromItsTrace)
{
    // Two beats of 0.8 s at 100 columns a second: 0.6 m/s on average, 1.1 m/s at the peak.
    std::vector<unsigned char> block;
    for (int column = 0; column <= 160; ++column) {
        const double velocity = 0.6 - 0.5 * std::cos(2 * std::numbers::pi * column / 80);
        block.push_back(static_cast<unsigned char>(std::lround(128 + velocity / span * bins)));
    }
    spectralTraceData traces;
    traces.setData(block.data(), static_cast<int>(block.size()), 1);
    const auto points = TracePoints(traces, eTraceEnvelopeForward, -5, 1000, 0.01);
    ASSERT_EQ(points.size(), block.size());
    // A velocity is known to half a bin.
    ExpectNear(NumbersOf(StripMark(MarkKind::flow, points), Acquisition()), {1.1, 0.6, 1.1},
               span / bins / 2);
    EXPECT_TRUE(TracePoints(traces, eTraceEnvelopeForward, 90, 90, 0.01).empty());
    EXPECT_TRUE(TracePoints(spectralTraceData(), eTraceEnvelopeForward, 0, 9, 0.01).empty());
}

TEST(StudyCurveTest, IsThePolynomialThatTheTraceHas)
{
    std::vector<MarkPoint> trace;
    for (int i = 0; i < 200; ++i) {
        const double t = 100 + i * 0.01;
        trace.push_back({t, 2 - 3 * (t - 101) + 4 * std::pow(t - 101, 3)});
    }
    const auto curve = CurveThrough(trace, 3);
    for (std::size_t i = 0; i < trace.size(); ++i)
        EXPECT_NEAR(curve[i].y, trace[i].y, 1e-9);
}

TEST(StudyCurveTest, LiesNearerToTheTruthThanTheTrace)
{
    test_support::Random random(5);
    double before = 0, after = 0;
    std::vector<MarkPoint> trace;
    for (int i = 0; i < 200; ++i)
        trace.push_back({i / 200.0, std::sin(i / 100.0) + random.Real(-0.1, 0.1)});
    const auto curve = CurveThrough(trace, 4);
    for (std::size_t i = 0; i < trace.size(); ++i) {
        const double truth = std::sin(static_cast<double>(i) / 100.0);
        before += std::pow(trace[i].y - truth, 2);
        after += std::pow(curve[i].y - truth, 2);
    }
    EXPECT_LT(after, before / 10); // 5 coefficients of 200 values keep a fortieth of the noise
}

TEST(StudyCurveTest, NeedsMorePlacesThanTheDegree)
{
    const std::vector<MarkPoint> few = {{0, 1}, {1, 5}, {1, 7}, {1, 9}};
    EXPECT_EQ(CurveThrough(few, 2), few);
    EXPECT_EQ(CurveThrough({}, 2), std::vector<MarkPoint>());
    ExpectNear({CurveThrough(few, 1)[1].y}, {7});
}

TEST(StudyCurveTest, FollowsATraceOfAnyLengthAndDropsItsNoise)
{
    test_support::Random random(7);
    double before = 0, after = 0;
    std::vector<MarkPoint> trace;
    const auto truth = [](double seconds) { return 0.6 - 0.5 * std::cos(5 * seconds); };
    for (int i = 0; i < 1000; ++i)
        trace.push_back({i / 100.0, truth(i / 100.0) + random.Real(-0.1, 0.1)});
    const auto curve = SmoothTrace(trace);
    ASSERT_EQ(curve.size(), trace.size());
    for (std::size_t i = 0; i < trace.size(); ++i) {
        EXPECT_EQ(curve[i].x, trace[i].x);
        before += std::pow(trace[i].y - truth(trace[i].x), 2);
        after += std::pow(curve[i].y - truth(trace[i].x), 2);
    }
    EXPECT_LT(after, before / 2);
    const auto values = NumbersOf(StripMark(MarkKind::flow, trace), Acquisition());
    EXPECT_GT(values[0], 1.15); // a peak of noise
    EXPECT_NEAR(values[2], 1.1, 0.09);
}

TEST(StudyCurveTest, LeavesAShortTraceAsItIs)
{
    const std::vector<MarkPoint> few = {{0, 1}, {1, 5}, {2, 3}};
    EXPECT_EQ(SmoothTrace(few), few);
    EXPECT_TRUE(SmoothTrace({}).empty());
}
