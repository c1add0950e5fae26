#include "GeometryScene.h"

#include <gtest/gtest.h>
#include <test_support/Canvas.h>
#include <test_support/Random.h>

#include <afxwin.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace {

constexpr int imageWidth = 640;
constexpr int imageHeight = 480;

// A real device context over readable pixels, with a white pen.
class Canvas : public test_support::Canvas
{
public:
    Canvas() : test_support::Canvas(imageWidth, imageHeight) { dc.SelectStockObject(WHITE_PEN); }

    CDC* Dc() { return &dc; }

    std::vector<UPoint> Drawn() const
    {
        std::vector<UPoint> points;
        int place = 0;
        for (const std::uint32_t pixel : Pixels()) {
            if ((pixel & 0xFFFFFF) != 0) points.push_back({place % imageWidth, place / imageWidth});
            ++place;
        }
        return points;
    }
};

double Distance(double ax, double ay, double bx, double by)
{
    return std::hypot(ax - bx, ay - by);
}

// The distance of a pixel from a segment.
double Distance(const UPoint& p, const UPoint& a, const UPoint& b)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double t =
        length == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0.0, 1.0);
    return Distance(p.x, p.y, a.x + t * dx, a.y + t * dy);
}

bool AnyNear(const std::vector<UPoint>& drawn, double x, double y, double reach)
{
    return std::any_of(drawn.begin(), drawn.end(),
                       [&](const UPoint& p) { return Distance(p.x, p.y, x, y) <= reach; });
}

// Compares a drawing with the segment from a to b: nothing beside it and no gap.
void ExpectSegment(const std::vector<UPoint>& drawn, const UPoint& a, const UPoint& b)
{
    ASSERT_FALSE(drawn.empty());
    for (const UPoint& p : drawn)
        ASSERT_LE(Distance(p, a, b), 0.75) << p.x << "," << p.y;
    const int steps = std::max(std::abs(a.x - b.x), std::abs(a.y - b.y));
    for (int i = 0; i < steps; ++i) // the end pixel itself is not drawn
    {
        const double t = static_cast<double>(i) / steps;
        const double x = a.x + t * (b.x - a.x);
        const double y = a.y + t * (b.y - a.y);
        if (x < 1 || y < 1 || x > imageWidth - 2 || y > imageHeight - 2)
            continue; // beyond the canvas
        ASSERT_TRUE(AnyNear(drawn, x, y, 0.75)) << x << "," << y;
    }
}

Scene SceneOf(int type, int flip, int scanA = 0, int scanB = 0)
{
    Scene s;
    s.probe.type = type;
    if (type != 0) s.origin.y = 20;
    s.scanA = scanA;
    s.scanB = scanB;
    s.flip = flip;
    return s;
}

} // namespace

TEST(DrawVerticalUSLine, IsTheSegmentBetweenItsEndsOnEveryProbe)
{
    for (int type : {0, 1, 2})
        for (int flip : {0, 1, 2, 3})
            for (int line : {0, 20, 48, 95}) {
                SCOPED_TRACE("type " + std::to_string(type) + " flip " + std::to_string(flip));
                const Scene s = SceneOf(type, flip, 3000, type == 2 ? 5000 * (flip & 1) : 0);
                Canvas canvas;
                const URect rect = s.Vertical(canvas.Dc(), line, 40, 700);
                EXPECT_EQ(rect, Bounds(s.At(line, 40), s.At(line, 700)));
                ExpectSegment(canvas.Drawn(), s.At(line, 40), s.At(line, 700));
            }
}

TEST(DrawHorizontalUSLine, IsAChordOnLinearAndPhasedProbes)
{
    for (int type : {1, 2})
        for (int flip : {0, 1, 2, 3}) {
            SCOPED_TRACE("type " + std::to_string(type) + " flip " + std::to_string(flip));
            const Scene s = SceneOf(type, flip, -4000);
            Canvas canvas;
            const URect rect = s.Horizontal(canvas.Dc(), 500, 10, 80);
            EXPECT_EQ(rect, Bounds(s.At(10, 500), s.At(80, 500)));
            ExpectSegment(canvas.Drawn(), s.At(10, 500), s.At(80, 500));
        }
}

TEST(DrawHorizontalUSLine, UsesTheLineDensity)
{
    Scene s = SceneOf(1, 0);
    s.ld = 192;
    Canvas canvas;
    EXPECT_EQ(s.Horizontal(canvas.Dc(), 500, 10, 80), Bounds(s.At(10, 500), s.At(80, 500)));
    ExpectSegment(canvas.Drawn(), s.At(10, 500), s.At(80, 500));
    s.ld = 0;
    EXPECT_NE(s.Horizontal(nullptr, 500, 10, 80).right, 0);
}

namespace {

// The oval of an arc's box, without the right and the bottom edge, which GDI leaves out.
struct Oval
{
    double cx, cy, rx, ry;
};

Oval OvalOf(const Scene& s, int sample)
{
    const int radius = sample * 100 + s.probe.radius;
    const int rx = radius / s.scale.x;
    const int ry = radius / s.scale.y;
    int left = s.origin.x - (rx + 1);
    int right = s.origin.x + rx + 2;
    int top = s.origin.y - (ry + 1);
    int bottom = s.origin.y + ry + 2;
    if (s.flip & 1) left = imageWidth - left, right = imageWidth - right;
    if (s.flip & 2) top = imageHeight - top, bottom = imageHeight - bottom;
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    return {(left + right - 1) / 2.0, (top + bottom - 1) / 2.0, (right - 1 - left) / 2.0,
            (bottom - 1 - top) / 2.0};
}

struct Position
{
    double x, y;
};

// The point of the oval on the ray through a pixel.
Position OnOval(const Oval& e, const UPoint& p)
{
    const double angle = std::atan2((p.y - e.cy) / e.ry, (p.x - e.cx) / e.rx);
    return {e.cx + e.rx * std::cos(angle), e.cy + e.ry * std::sin(angle)};
}

double FromOval(const Oval& e, const UPoint& p)
{
    const Position nearest = OnOval(e, p); // exact enough for these nearly round ovals
    return Distance(p.x, p.y, nearest.x, nearest.y);
}

class ArcOnCurvedProbe : public testing::TestWithParam<std::tuple<int, bool, int>>
{
protected:
    Scene ArcScene() const
    {
        const auto [flip, concave, steer] = GetParam();
        Scene s = SceneOf(0, flip, steer);
        if (concave) {
            s.probe.radius = -90000; // depths up to 90 mm lie before the centre of curvature
            s.origin.y = 470;
        }
        return s;
    }
};

} // namespace

TEST_P(ArcOnCurvedProbe, RunsAlongTheDepthFromLineToLine)
{
    const Scene s = ArcScene();
    for (const auto& [line1, line2] : {std::pair(5, 90), std::pair(90, 5), std::pair(40, 55)}) {
        const int sample = 300;
        Canvas canvas;
        const URect rect = s.Horizontal(canvas.Dc(), sample, line1, line2);
        EXPECT_EQ(rect, Bounds(s.At(line1, sample), s.At(line2, sample)));
        const std::vector<UPoint> drawn = canvas.Drawn();
        ASSERT_FALSE(drawn.empty());

        const Oval oval = OvalOf(s, sample);
        const UPoint p1 = s.At(line1, sample);
        const UPoint p2 = s.At(line2, sample);
        for (const UPoint& p : drawn) {
            ASSERT_LE(FromOval(oval, p), 1.0) << p.x << "," << p.y;
            ASSERT_GE(p.x, std::min(p1.x, p2.x) - 2) << "the arc went round the other way";
            ASSERT_LE(p.x, std::max(p1.x, p2.x) + 2) << "the arc went round the other way";
        }
        // There is no gap: the oval's point at every line between is drawn.
        for (int line = std::min(line1, line2); line <= std::max(line1, line2); ++line) {
            const Position p = OnOval(oval, s.At(line, sample));
            ASSERT_TRUE(AnyNear(drawn, p.x, p.y, 2.5))
                << line; // GDI leaves out the last pixel or two
        }
    }
}

TEST_P(ArcOnCurvedProbe, MapsBackToItsDepth)
{
    const Scene s = ArcScene();
    Canvas canvas;
    s.Horizontal(canvas.Dc(), 300, 5, 90);
    // The box of an arc has deliberate oddities. It grows by a pixel more on one side than on the
    // other, so the mirrored box lies a pixel off. Around a negative radius, the enlargement makes
    // it smaller.
    const double reach = 1.5 + (s.flip != 0 ? 1 : 0) + (s.probe.radius < 0 ? 2 : 0);
    const double samplesPerPixel = std::max(s.scale.x, s.scale.y) / 100.0;
    for (const UPoint& p : canvas.Drawn()) {
        const UPoint back = CImgGeometry::GetUSCoordinates(
            p.x, p.y, s.origin, s.scale, s.samplingFreq, s.scanA, 0, 96, &s.probe, s.soundSpeed, 0,
            s.width, s.height, s.flip);
        ASSERT_NEAR(back.y, 300, reach * samplesPerPixel + 0.5) << p.x << "," << p.y;
        ASSERT_GE(back.x, 3);
        ASSERT_LE(back.x, 92);
    }
}

INSTANTIATE_TEST_SUITE_P(FlipsRadiusSignsAndSteering, ArcOnCurvedProbe,
                         testing::Combine(testing::Values(0, 1, 2, 3), testing::Bool(),
                                          testing::Values(0, 6000)));

TEST(DrawHorizontalUSLine, StartsAtTheRightPointWhenBothHaveTheSameX)
{
    // With one line, start and end fall together, and GDI draws the whole oval.
    const Scene s = SceneOf(0, 0);
    Canvas canvas;
    s.Horizontal(canvas.Dc(), 300, 40, 40);
    const Oval oval = OvalOf(s, 300);
    const auto drawn = canvas.Drawn();
    EXPECT_TRUE(AnyNear(drawn, oval.cx, oval.cy + oval.ry, 1.5)) << "the lowest point of the oval";
}

TEST(DrawHorizontalUSLine, WrapsTheSoundSpeedProductAround)
{
    // 4296 x 1,000,000 is 1,032,704 more than 2^32, which gives a speed of about one metre a
    // second. So the arc is the face's.
    Scene fast = SceneOf(0, 0);
    fast.soundSpeed = 4296;
    Canvas canvas;
    fast.Horizontal(canvas.Dc(), 300, 5, 90);
    const auto drawn = canvas.Drawn();
    ASSERT_FALSE(drawn.empty());
    const double depth = 300 * 1032704.0 / (2.0 * fast.samplingFreq);
    for (const UPoint& p : drawn) {
        const double r = std::hypot((p.x - fast.origin.x) * 220.0, (p.y - fast.origin.y) * 200.0);
        ASSERT_NEAR(r, 40000 + depth, 450) << "microns: two pixels";
    }
}

TEST(Drawing, DrawsNothingForUnknownProbesAndZeroScales)
{
    Canvas canvas;
    Scene s = SceneOf(3, 0);
    EXPECT_EQ(s.Vertical(canvas.Dc(), 10, 0, 100), URect{});
    EXPECT_EQ(s.Horizontal(canvas.Dc(), 10, 0, 90), URect{});
    s.probe.type = -1;
    EXPECT_EQ(s.Vertical(canvas.Dc(), 10, 0, 100), URect{});
    for (int type : {0, 1, 2}) {
        s = SceneOf(type, 0);
        s.scale.x = 0;
        EXPECT_EQ(s.Horizontal(canvas.Dc(), 10, 0, 90), URect{});
        s.scale = {100, 0};
        EXPECT_EQ(s.Horizontal(canvas.Dc(), 10, 0, 90), URect{});
    }
    EXPECT_EQ(CImgGeometry::DrawVerticalUSLine(canvas.Dc(), 1, 2, 3, {9, 9}, {100, 100}, 7700000, 0,
                                               0, nullptr, 1540, 0, imageWidth, imageHeight, 0, 0),
              URect{});
    EXPECT_EQ(CImgGeometry::DrawHorizontalUSLine(canvas.Dc(), 1, 2, 3, {9, 9}, {100, 100}, 7700000,
                                                 0, 0, nullptr, 1540, 0, imageWidth, imageHeight, 0,
                                                 0),
              URect{});
    EXPECT_TRUE(canvas.Drawn().empty());
}

TEST(Drawing, ComputesTheSameWithoutADeviceContext)
{
    for (int type : {0, 1, 2}) {
        const Scene s = SceneOf(type, 3);
        Canvas canvas;
        EXPECT_EQ(s.Vertical(nullptr, 10, 0, 100), s.Vertical(canvas.Dc(), 10, 0, 100));
        EXPECT_EQ(s.Horizontal(nullptr, 10, 0, 90), s.Horizontal(canvas.Dc(), 10, 0, 90));
    }
}

TEST(Drawing, SurvivesAbsurdInput)
{
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1000, -1, 0, 1, 1540, INT_MAX - 1, INT_MAX};
    test_support::Random random(12345);
    const auto any = [&] { return random.Of(extremes); };
    for (int i = 0; i < 20000; ++i) {
        Scene s = SceneOf(i % 3, any());
        s.probe = {i % 3, any(), any(), any(), any()};
        s.origin = {any(), any()};
        s.scale = {any(), any()};
        s.samplingFreq = any();
        s.soundSpeed = any();
        s.ld = any();
        const ULine clip{any(), any(), any(), any()};
        s.Vertical(nullptr, any(), any(), any());
        s.Horizontal(nullptr, any(), any(), any());
        s.scanA = any();
        s.scanC = any();
        s.width = any();
        s.height = any();
        s.flip = any();
        s.ld = any();
        s.HorizontalClip(nullptr, any(), any(), any(), clip, clip);
    }
    Canvas canvas; // now with real drawing, where GDI has to cope with the numbers
    for (int i = 0; i < 50; ++i) {
        Scene s = SceneOf(0, any() & 3);
        s.probe.radius = any();
        s.scale = {std::max(1, any()), -1};
        s.samplingFreq = any();
        s.Horizontal(canvas.Dc(), any(), any(), any());
    }
}
