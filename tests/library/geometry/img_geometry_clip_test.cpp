#include "DrawingRecorder.h"

#include <gtest/gtest.h>
#include <Utils_Statics/CImgGeometry.h>

#include <climits>
#include <ostream>
#include <random>

void PrintTo(const ULine& line, std::ostream* out)
{
    *out << "(" << line.x1 << "," << line.y1 << ")-(" << line.x2 << "," << line.y2 << ")";
}
void PrintTo(const UPoint& p, std::ostream* out)
{
    *out << "(" << p.x << "," << p.y << ")";
}

TEST(GetIntersectPt, FindsNoneForParallelLines)
{
    UPoint pt{-7, -8};
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({5, 0, 5, 10}, {9, 3, 9, 4}, pt))
        << "two vertical ones";
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({0, 0, 10, 20}, {3, 0, 8, 10}, pt))
        << "the same slope";
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({0, 4, 10, 4}, {3, 9, 8, 9}, pt))
        << "two horizontal ones";
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({5, 5, 5, 5}, {9, 3, 9, 4}, pt))
        << "a point counts as vertical";
    EXPECT_EQ(pt, (UPoint{-7, -8})) << "left as it was";
}

TEST(GetIntersectPt, TruncatesOnAVerticalFirstLineAndRoundsOnAVerticalSecond)
{
    const ULine vertical{5, 0, 5, 100};
    const ULine rising{0, 0, 10, 15}; // 7.5 at x = 5
    UPoint pt;
    ASSERT_TRUE(CImgGeometry::GetIntersectPt(vertical, rising, pt));
    EXPECT_EQ(pt, (UPoint{5, 7}));
    ASSERT_TRUE(CImgGeometry::GetIntersectPt(rising, vertical, pt));
    EXPECT_EQ(pt, (UPoint{5, 8}));

    const ULine falling{0, 0, 10, -15};
    ASSERT_TRUE(CImgGeometry::GetIntersectPt(vertical, falling, pt));
    EXPECT_EQ(pt, (UPoint{5, -7})) << "towards zero";
    ASSERT_TRUE(CImgGeometry::GetIntersectPt(falling, vertical, pt));
    EXPECT_EQ(pt, (UPoint{5, -8})) << "away from zero";
}

TEST(GetIntersectPt, TakesTheLinesAsInfinite)
{
    UPoint pt;
    ASSERT_TRUE(CImgGeometry::GetIntersectPt({0, 0, 1, 1}, {100, 0, 99, 1}, pt));
    EXPECT_EQ(pt, (UPoint{50, 50}));
}

TEST(GetIntersectPt, WorksInSinglePrecision)
{
    // In double precision the slopes 1/3 and 0.333333343... differ. As single-precision values they
    // are equal.
    UPoint pt;
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({0, 0, 3, 1}, {0, 5, 33554433, 11184816}, pt));
    // 16777217 is not a single-precision number.
    ASSERT_TRUE(CImgGeometry::GetIntersectPt({0, 16777217, 10, 16777217}, {4, 0, 4, 9}, pt));
    EXPECT_EQ(pt, (UPoint{4, 16777216}));
}

TEST(GetIntersectPt, StopsAtTheLimitsForAbsurdLines)
{
    UPoint pt;
    EXPECT_TRUE(CImgGeometry::GetIntersectPt({INT_MIN, INT_MIN, INT_MAX, INT_MAX},
                                             {0, INT_MAX, 1, INT_MIN}, pt));
    EXPECT_TRUE(CImgGeometry::GetIntersectPt({INT_MAX, 0, INT_MAX, 1}, {0, 0, 1, INT_MAX}, pt));
    EXPECT_EQ(pt, (UPoint{INT_MAX, INT_MAX}));
    std::mt19937 engine(3);
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, 2, INT_MAX - 1, INT_MAX};
    const auto any = [&] { return extremes[std::uniform_int_distribution<int>(0, 7)(engine)]; };
    for (int i = 0; i < 20000; ++i) {
        ULine out;
        const ULine a{any(), any(), any(), any()};
        const ULine b{any(), any(), any(), any()};
        CImgGeometry::GetIntersectPt(a, b, pt);
        CImgGeometry::ClipLines(nullptr, a, b, out, (i & 1) != 0);
    }
}

TEST(ClipLines, OrdersByXWhenThereIsNoIntersection)
{
    ULine out;
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {9, 1, 2, 50}, {9, 11, 2, 60}, out, true));
    EXPECT_EQ(out, (ULine{2, 50, 9, 1}));
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {5, 60, 5, 1}, {7, 0, 7, 1}, out, true));
    EXPECT_EQ(out, (ULine{5, 60, 5, 1})) << "equal x keeps the order";
}

TEST(ClipLines, ClipsANearlyHorizontalLineInXOnly)
{
    DrawingRecorder recorder;
    const ULine edge{100, 0, 40, 300}; // x = 80 at y = 100
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {0, 100, 200, 100}, edge, out, true));
    EXPECT_EQ(out, (ULine{80, 100, 200, 100}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {200, 100, 0, 100}, edge, out, false));
    EXPECT_EQ(out, (ULine{0, 100, 80, 100}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {0, 100, 200, 109}, edge, out, true))
        << "nine pixels of rise";
    EXPECT_EQ(out.x2, 200);
    EXPECT_EQ(out.y2, 109);
    EXPECT_FALSE(CImgGeometry::ClipLines(recorder.Dc(), {81, 100, 200, 100}, edge, out, true))
        << "all inside";
    EXPECT_EQ(out, (ULine{81, 100, 200, 100}));
    EXPECT_FALSE(CImgGeometry::ClipLines(recorder.Dc(), {0, 100, 79, 100}, edge, out, false))
        << "all inside";
    EXPECT_EQ(out, (ULine{0, 100, 79, 100}));
    EXPECT_TRUE(recorder.TakeStrokes().empty());
}

TEST(ClipLines, ClipsANearlyHorizontalLineAtAVerticalEdge)
{
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {0, 100, 200, 109}, {50, 0, 50, 9}, out, true));
    EXPECT_EQ(out, (ULine{50, 102, 200, 109})); // 102.25
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {60, 100, 200, 109}, {50, 0, 50, 9}, out, true));
    EXPECT_EQ(out, (ULine{60, 100, 200, 109}));
}

TEST(ClipLines, EndsALineAtASlopingEdgeWithAStroke)
{
    DrawingRecorder recorder;
    const ULine edge{100, 0, 200, 100}; // x = y + 100
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 200, 150, 0}, edge, out, true));
    EXPECT_EQ(out, (ULine{150, 0, 150, 50})) << "ordered by y, the lower end clipped";
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{150, 50, 300, 50}}))
        << "to the edge's x at the line's lower end";
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 0, 150, 200}, edge, out, false))
        << "at either end";
    EXPECT_EQ(out, (ULine{150, 0, 150, 50}));
}

TEST(ClipLines, LeavesALineThatEndsAboveASlopingEdge)
{
    ULine out;
    // The lines would meet at (150, 50), below both ends.
    EXPECT_FALSE(
        CImgGeometry::ClipLines(nullptr, {150, 40, 150, 10}, {100, 0, 200, 100}, out, true));
    EXPECT_EQ(out, (ULine{150, 10, 150, 40})) << "ordered by y";
}

TEST(ClipLines, LeavesALineThatStartsBelowASlopingEdge)
{
    ULine out;
    const ULine edge{100, 0, 200, 100};
    // They meet at (150, 50), above the line. The edge between the line's heights replaces it.
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {150, 60, 150, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{190, 90, 160, 60})) << "the lower point first";
    // Above the image the intersection does not count: y is 0, so the result is false.
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {100, 60, 100, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{100, 60, 100, 90}));
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {101, 60, 101, 90}, edge, out, true))
        << "y = 1 does";
}

TEST(ClipLines, EndsALineAtAHorizontalEdgeWithoutAStroke)
{
    DrawingRecorder recorder;
    const ULine edge{0, 50, 300, 50};
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 0, 150, 200}, edge, out, true));
    EXPECT_EQ(out, (ULine{150, 0, 150, 50}));
    EXPECT_TRUE(recorder.TakeStrokes().empty())
        << "the edge is nowhere at the height of the line's lower end";
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 60, 150, 200}, edge, out, true));
    EXPECT_EQ(out, (ULine{0, 0, 0, 0})) << "nor at the heights of a line below it";
}

TEST(ClipLines, CountsEndsOnTheEdgeAsMeetingIt)
{
    DrawingRecorder recorder;
    const ULine edge{100, 0, 200, 100}; // x = y + 100
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 50, 150, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{150, 50, 150, 50})) << "the upper end";
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 10, 150, 50}, edge, out, true));
    EXPECT_EQ(out, (ULine{150, 10, 150, 50})) << "the lower end";
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{150, 50, 190, 50}, {150, 50, 150, 50}}));

    const ULine vertical{100, 0, 100, 50};
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {100, 10, 180, 90}, vertical, out, true));
    EXPECT_EQ(out, (ULine{100, 10, 180, 90}));
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {100, 10, 180, 90}, vertical, out, false));
    EXPECT_EQ(out, (ULine{100, 10, 100, 90})) << "all of it beside the other edge or on it";
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {20, 10, 100, 90}, vertical, out, true));
    EXPECT_EQ(out, (ULine{100, 10, 100, 90})) << "all of it beside the edge or on it";
    EXPECT_TRUE(
        CImgGeometry::ClipLines(nullptr, {100, 10, 100, 15}, {100, 12, 300, 13}, out, true));
    EXPECT_EQ(out, (ULine{100, 12, 100, 15}));
}

TEST(ClipLines, TakesATenPixelRiseForASlopingLine)
{
    const ULine edge{50, 0, 60, 100};
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {0, 110, 200, 101}, edge, out, true))
        << "nine: clipped in x only";
    EXPECT_EQ(out, (ULine{61, 107, 200, 101}));
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {0, 110, 200, 100}, edge, out, true))
        << "ten: the lower end goes";
    EXPECT_EQ(out, (ULine{200, 100, 61, 107}));
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {200, 100, 0, 110}, edge, out, true));
    EXPECT_EQ(out, (ULine{200, 100, 61, 107})) << "in either direction";
}

TEST(ClipLines, ReplacesAFlatLineByTheEdgeThatItMissesByLessThanAPixelOfHeight)
{
    // They meet at (-40, 19.6). After rounding that is the height of the line's upper end, but 40
    // pixels beside it.
    const ULine edge{-41, -80, -39, 120};
    DrawingRecorder recorder;
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {0, 20, 1000, 30}, edge, out, true));
    EXPECT_EQ(out, (ULine{-40, 30, -40, 20}));
    EXPECT_TRUE(recorder.TakeStrokes().empty());
}

TEST(ClipLines, LeavesALineWhoseIntersectionIsAboveItsLowerEndOnly)
{
    // The intersection lies between the heights and not between the x values, which only rounding
    // makes possible for one straight line. So only an edge below the start remains.
    ULine out;
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {0, 0, 10, 100}, {0, 500, 100, 501}, out, true));
}

TEST(ClipLines, MovesALineBesideAVerticalEdgeOntoIt)
{
    DrawingRecorder recorder;
    const ULine edge{100, 0, 100, 50};
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {20, 10, 60, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{100, 10, 100, 90})) << "only the x values";
    EXPECT_FALSE(CImgGeometry::ClipLines(recorder.Dc(), {20, 10, 60, 90}, edge, out, false));
    EXPECT_EQ(out, (ULine{20, 10, 60, 90}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {160, 10, 120, 90}, edge, out, false));
    EXPECT_EQ(out, (ULine{100, 90, 100, 10})) << "ordered by x before";
    EXPECT_TRUE(recorder.TakeStrokes().empty());
}

TEST(ClipLines, CutsALineAtAVerticalEdgeWithAStrokeAlongIt)
{
    DrawingRecorder recorder;
    const ULine edge{100, 0, 100, 50};
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {80, 10, 120, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{100, 50, 120, 90}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{100, 50, 100, 90}}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {80, 10, 120, 90}, edge, out, false));
    EXPECT_EQ(out, (ULine{80, 10, 100, 50}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{100, 50, 100, 90}}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {80, 90, 120, 10}, edge, out, true));
    EXPECT_EQ(out, (ULine{100, 50, 120, 10}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{100, 50, 100, 90}}))
        << "down to the lower end in any case";
}

TEST(ClipLines, TakesTheSameObjectForLineAndResult)
{
    ULine line{80, 10, 120, 90};
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, line, {100, 0, 100, 50}, line, true));
    EXPECT_EQ(line, (ULine{100, 50, 120, 90}));
}

namespace {

constexpr ZelProbe Linear{1, 128, 300, 0, 0};
constexpr ZelProbe Phased{2, 64, 220, 0, 90000};
constexpr ZelProbe UnknownProbe{5, 64, 220, 0, 90000};
constexpr UPoint Origin{400, 10};
constexpr UPoint Scale{100, 100};
constexpr ULine LeftEdge{400, 10, 0, 410};
constexpr ULine RightEdge{400, 10, 800, 410};

URect Horizontal(CDC* dc, const ZelProbe* probe, int scanB, const ULine& clip1 = LeftEdge,
                 const ULine& clip2 = RightEdge)
{
    return CImgGeometry::DrawHorizontalUSLineClip(dc, 300, -20, 50, Origin, Scale, 7700000, 0,
                                                  scanB, probe, 1540, clip1, clip2, 0, 800, 600, 0,
                                                  0);
}

} // namespace

TEST(DrawHorizontalUSLineClip, ClipsAPhasedLineAtTheSectorsEdge)
{
    DrawingRecorder recorder;
    const URect drawn = Horizontal(recorder.Dc(), &Phased, 0);
    const Strokes strokes = recorder.TakeStrokes();
    ASSERT_FALSE(strokes.empty());
    const ULine& last = strokes.back();
    EXPECT_EQ(drawn, (URect{std::min(last.x1, last.x2), std::min(last.y1, last.y2),
                            std::max(last.x1, last.x2), std::max(last.y1, last.y2)}));
    // The left edge is x + y = 410.
    EXPECT_TRUE(std::abs(last.x1 + last.y1 - 410) <= 1 || std::abs(last.x2 + last.y2 - 410) <= 1);
}

TEST(DrawHorizontalUSLineClip, DrawsExtendedSectorsAndLinearProbesWhole)
{
    for (const ZelProbe* probe : {&Linear, &Phased}) {
        DrawingRecorder recorder;
        const int scanB = probe == &Phased ? 10000 : 0;
        Horizontal(recorder.Dc(), probe, scanB);
        const Strokes clipped = recorder.TakeStrokes();
        CImgGeometry::DrawHorizontalUSLine(recorder.Dc(), 300, -20, 50, Origin, Scale, 7700000, 0,
                                           scanB, probe, 1540, 0, 800, 600, 0, 0);
        EXPECT_EQ(clipped, recorder.TakeStrokes());
        EXPECT_EQ(clipped.size(), 1u);
    }
}

TEST(DrawHorizontalUSLineClip, DrawsLinearProbesAcrossTheEdges)
{
    DrawingRecorder recorder;
    const ULine across{100, 0, 500, 600}; // x = 306 at the line's y = 310
    const URect drawn = Horizontal(recorder.Dc(), &Linear, 0, across, across);
    ASSERT_LT(drawn.left, 300);
    ASSERT_GT(drawn.right, 310);
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{drawn.left, 310, drawn.right, 310}}));
}

TEST(DrawHorizontalUSLineClip, DrawsUnknownProbesToo)
{
    DrawingRecorder recorder;
    // Both ends are the origin, and parallel lines do not clip, so a line of no length is drawn.
    const ULine vertical{0, 0, 0, 9};
    EXPECT_EQ(Horizontal(recorder.Dc(), &UnknownProbe, 1, vertical, vertical),
              (URect{400, 10, 400, 10}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{400, 10, 400, 10}}));
    EXPECT_EQ(Horizontal(recorder.Dc(), nullptr, 1), (URect{400, 10, 400, 10}))
        << "no probe is as an unknown one";
}

TEST(DrawHorizontalUSLineClip, ClipsUnknownProbesAsPhasedOnes)
{
    DrawingRecorder recorder;
    // Both ends are the origin (400, 10), a line without length; the edge is at y = 30 there.
    const ULine edge{0, 30, 900, 30};
    EXPECT_EQ(Horizontal(recorder.Dc(), &UnknownProbe, 0, edge, edge), (URect{400, 10, 400, 30}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{400, 30, 400, 10}}))
        << "at the start, by the first edge";
    const ULine parallel{0, 0, 0, 9};
    EXPECT_EQ(Horizontal(recorder.Dc(), &UnknownProbe, 0, parallel, edge),
              (URect{400, 10, 400, 30}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{400, 10, 400, 30}}))
        << "at the end, by the second edge";
}

TEST(DrawVerticalUSLineClip, DrawsWhatTheSecondEdgeLeftWhenNeitherClips)
{
    DrawingRecorder recorder;
    const ULine away{5000, 0, 5001, 900};
    // The line goes upwards along element 31: the edges only put the ends in order.
    const URect drawn =
        CImgGeometry::DrawVerticalUSLineClip(recorder.Dc(), 31, 400, 10, Origin, Scale, 7700000, 0,
                                             0, &Phased, 1540, away, away, 0, 800, 600, 0, 0);
    const Strokes strokes = recorder.TakeStrokes();
    ASSERT_EQ(strokes.size(), 1u);
    EXPECT_EQ(strokes.front().y1, drawn.top);
    EXPECT_EQ(strokes.front().y2, drawn.bottom);
}

TEST(DrawVerticalUSLineClip, ClipsTheSecondEdgeWhenTheFirstDoesNot)
{
    DrawingRecorder recorder;
    // Element 31 runs almost straight down from the origin; the first edge is beside it, the second
    // crosses it.
    const ULine beside{
        0, 0, 0, 9}; // vertical at 0, with the line on its right and the start clipped: not met
    const ULine across{300, 200, 500, 205};
    const URect drawn =
        CImgGeometry::DrawVerticalUSLineClip(recorder.Dc(), 31, 0, 400, Origin, Scale, 7700000, 0,
                                             0, &Phased, 1540, beside, across, 0, 800, 600, 0, 0);
    EXPECT_EQ(drawn.top, 10);
    EXPECT_NEAR(drawn.bottom, 202, 1);
    EXPECT_EQ(recorder.TakeStrokes().size(), 2u) << "the stroke along the edge and the line";
}

TEST(DrawVerticalUSLineClip, LeavesCurvedProbesUnclipped)
{
    const ZelProbe curved{0, 128, 300, 40000, 0};
    DrawingRecorder recorder;
    const ULine edge{0, 450, 800, 450};
    const URect clipped =
        CImgGeometry::DrawVerticalUSLineClip(recorder.Dc(), 60, 10, 400, Origin, Scale, 7700000, 0,
                                             0, &curved, 1540, edge, edge, 0, 800, 600, 0, 0);
    const Strokes first = recorder.TakeStrokes();
    const URect whole = CImgGeometry::DrawVerticalUSLine(
        recorder.Dc(), 60, 10, 400, Origin, Scale, 7700000, 0, 0, &curved, 1540, 0, 800, 600, 0, 0);
    EXPECT_EQ(clipped, whole);
    EXPECT_EQ(first, recorder.TakeStrokes());
}
