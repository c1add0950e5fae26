#include "DrawingRecorder.h"
#include "GeometryScene.h"

#include <gtest/gtest.h>
#include <test_support/Random.h>

#include <climits>
#include <ostream>
#include <source_location>

using test_support::Random;

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
    Random random(3);
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, 2, INT_MAX - 1, INT_MAX};
    const auto any = [&] { return random.Of(extremes); };
    for (int i = 0; i < 20000; ++i) {
        ULine out;
        const ULine a{any(), any(), any(), any()};
        const ULine b{any(), any(), any(), any()};
        CImgGeometry::GetIntersectPt(a, b, pt);
        CImgGeometry::ClipLines(nullptr, a, b, out, (i & 1) != 0);
    }
}

namespace {

const ULine falling{100, 0, 40, 300}; // x = 80 at y = 100
const ULine upright{100, 0, 100, 50};
const ULine level{0, 50, 300, 50};
const ULine sloping{100, 0, 200, 100}; // x = y + 100
const ULine steep{50, 0, 60, 100};

// Compares the result, and the strokes of a device context, which is optional.
void Expect(bool isClipped, const ULine& line, const ULine& edge, bool atStart, const ULine& result,
            const Strokes& strokes, const std::source_location& place)
{
    const testing::ScopedTrace trace(place.file_name(), static_cast<int>(place.line()), "");
    DrawingRecorder recorder;
    for (CDC* const dc : {recorder.Dc(), static_cast<CDC*>(nullptr)}) {
        ULine out;
        EXPECT_EQ(CImgGeometry::ClipLines(dc, line, edge, out, atStart), isClipped);
        EXPECT_EQ(out, result);
    }
    EXPECT_EQ(recorder.TakeStrokes(), strokes);
}

void Clips(const ULine& line, const ULine& edge, bool atStart, const ULine& result,
           const Strokes& strokes = {},
           const std::source_location& place = std::source_location::current())
{
    Expect(true, line, edge, atStart, result, strokes, place);
}

void Leaves(const ULine& line, const ULine& edge, bool atStart, const ULine& result,
            const std::source_location& place = std::source_location::current())
{
    Expect(false, line, edge, atStart, result, {}, place);
}

} // namespace

TEST(ClipLines, OrdersByXWhenThereIsNoIntersection)
{
    Leaves({9, 1, 2, 50}, {9, 11, 2, 60}, true, {2, 50, 9, 1});
    Leaves({5, 60, 5, 1}, {7, 0, 7, 1}, true, {5, 60, 5, 1}); // equal x keeps the order
}

TEST(ClipLines, ClipsANearlyHorizontalLineInXOnly)
{
    Clips({0, 100, 200, 100}, falling, true, {80, 100, 200, 100});
    Clips({200, 100, 0, 100}, falling, false, {0, 100, 80, 100});
    Clips({0, 100, 200, 109}, falling, true, {79, 104, 200, 109}); // nine pixels of rise
    Leaves({81, 100, 200, 100}, falling, true, {81, 100, 200, 100});
    Leaves({0, 100, 79, 100}, falling, false, {0, 100, 79, 100});
    // At an upright edge, at y = 102.25.
    Clips({0, 100, 200, 109}, {50, 0, 50, 9}, true, {50, 102, 200, 109});
    Leaves({60, 100, 200, 109}, {50, 0, 50, 9}, true, {60, 100, 200, 109});
}

// The result is ordered by y. The stroke runs to the edge's x at the line's lower end.
TEST(ClipLines, EndsALineAtASlopingEdgeWithAStroke)
{
    Clips({150, 200, 150, 0}, sloping, true, {150, 0, 150, 50}, {{150, 50, 300, 50}});
    Clips({150, 0, 150, 200}, sloping, false, {150, 0, 150, 50}, {{150, 50, 300, 50}});
}

// The lines would meet at (150, 50), below both ends.
TEST(ClipLines, LeavesALineThatEndsAboveASlopingEdge)
{
    Leaves({150, 40, 150, 10}, sloping, true, {150, 10, 150, 40});
}

TEST(ClipLines, LeavesALineThatStartsBelowASlopingEdge)
{
    // They meet at (150, 50), above the line. The edge between the line's heights replaces it, with
    // the lower point first.
    Clips({150, 60, 150, 90}, sloping, true, {190, 90, 160, 60});
    // Above the image the intersection does not count: y is 0, so the result is false. y = 1 does.
    Leaves({100, 60, 100, 90}, sloping, true, {100, 60, 100, 90});
    Clips({101, 60, 101, 90}, sloping, true, {190, 90, 160, 60});
}

// The edge is nowhere at the height of the line's lower end, nor at those of a line below it.
TEST(ClipLines, EndsALineAtAHorizontalEdgeWithoutAStroke)
{
    Clips({150, 0, 150, 200}, level, true, {150, 0, 150, 50});
    Clips({150, 60, 150, 200}, level, true, {0, 0, 0, 0});
}

TEST(ClipLines, CountsEndsOnTheEdgeAsMeetingIt)
{
    Clips({150, 50, 150, 90}, sloping, true, {150, 50, 150, 50}, {{150, 50, 190, 50}});
    Clips({150, 10, 150, 50}, sloping, true, {150, 10, 150, 50}, {{150, 50, 150, 50}});

    Clips({100, 10, 180, 90}, upright, true, {100, 10, 180, 90}, {{100, 10, 100, 90}});
    Clips({100, 10, 180, 90}, upright, false, {100, 10, 100, 90}); // all beside the other edge
    Clips({20, 10, 100, 90}, upright, true, {100, 10, 100, 90});   // all beside the edge
    Clips({100, 10, 100, 15}, {100, 12, 300, 13}, true, {100, 12, 100, 15});
}

// Nine pixels are clipped in x only. With ten the lower end goes, in either direction.
TEST(ClipLines, TakesATenPixelRiseForASlopingLine)
{
    Clips({0, 110, 200, 101}, steep, true, {61, 107, 200, 101});
    Clips({0, 110, 200, 100}, steep, true, {200, 100, 61, 107}, {{61, 107, 61, 107}});
    Clips({200, 100, 0, 110}, steep, true, {200, 100, 61, 107}, {{61, 107, 61, 107}});
}

// They meet at (-40, 19.6). After rounding that is the height of the line's upper end, but 40
// pixels beside it.
TEST(ClipLines, ReplacesAFlatLineByTheEdgeThatItMissesByLessThanAPixelOfHeight)
{
    Clips({0, 20, 1000, 30}, {-41, -80, -39, 120}, true, {-40, 30, -40, 20});
}

// The intersection lies between the heights and not between the x values, which only rounding makes
// possible for one straight line. So only an edge below the start remains.
TEST(ClipLines, LeavesALineWhoseIntersectionIsAboveItsLowerEndOnly)
{
    Leaves({0, 0, 10, 100}, {0, 500, 100, 501}, true, {0, 0, 10, 100});
}

// Only the x values move. A line is ordered by x before.
TEST(ClipLines, MovesALineBesideAVerticalEdgeOntoIt)
{
    Clips({20, 10, 60, 90}, upright, true, {100, 10, 100, 90});
    Leaves({20, 10, 60, 90}, upright, false, {20, 10, 60, 90});
    Clips({160, 10, 120, 90}, upright, false, {100, 90, 100, 10});
}

// The stroke runs down to the lower end in any case.
TEST(ClipLines, CutsALineAtAVerticalEdgeWithAStrokeAlongIt)
{
    Clips({80, 10, 120, 90}, upright, true, {100, 50, 120, 90}, {{100, 50, 100, 90}});
    Clips({80, 10, 120, 90}, upright, false, {80, 10, 100, 50}, {{100, 50, 100, 90}});
    Clips({80, 90, 120, 10}, upright, true, {100, 50, 120, 10}, {{100, 50, 100, 90}});
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
constexpr ULine LeftEdge{400, 10, 0, 410};
constexpr ULine RightEdge{400, 10, 800, 410};

URect Horizontal(CDC* dc, const ZelProbe& probe, int scanB, const ULine& clip1 = LeftEdge,
                 const ULine& clip2 = RightEdge)
{
    return SceneOf(probe, scanB).HorizontalClip(dc, 300, -20, 50, clip1, clip2);
}

} // namespace

TEST(DrawHorizontalUSLineClip, ClipsAPhasedLineAtTheSectorsEdge)
{
    DrawingRecorder recorder;
    const URect drawn = Horizontal(recorder.Dc(), Phased, 0);
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
    for (const Scene& scene : {SceneOf(Linear), SceneOf(Phased, 10000)}) {
        DrawingRecorder recorder;
        scene.HorizontalClip(recorder.Dc(), 300, -20, 50, LeftEdge, RightEdge);
        const Strokes clipped = recorder.TakeStrokes();
        scene.Horizontal(recorder.Dc(), 300, -20, 50);
        EXPECT_EQ(clipped, recorder.TakeStrokes());
        EXPECT_EQ(clipped.size(), 1u);
    }
}

TEST(DrawHorizontalUSLineClip, DrawsLinearProbesAcrossTheEdges)
{
    DrawingRecorder recorder;
    const ULine across{100, 0, 500, 600}; // x = 306 at the line's y = 310
    const URect drawn = Horizontal(recorder.Dc(), Linear, 0, across, across);
    ASSERT_LT(drawn.left, 300);
    ASSERT_GT(drawn.right, 310);
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{drawn.left, 310, drawn.right, 310}}));
}

TEST(DrawHorizontalUSLineClip, DrawsUnknownProbesToo)
{
    DrawingRecorder recorder;
    // Both ends are the origin, and parallel lines do not clip, so a line of no length is drawn.
    const ULine vertical{0, 0, 0, 9};
    EXPECT_EQ(Horizontal(recorder.Dc(), UnknownProbe, 1, vertical, vertical),
              (URect{400, 10, 400, 10}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{400, 10, 400, 10}}));
    EXPECT_EQ(CImgGeometry::DrawHorizontalUSLineClip(recorder.Dc(), 300, -20, 50, {400, 10},
                                                     {100, 100}, 7700000, 0, 1, nullptr, 1540,
                                                     LeftEdge, RightEdge, 0, 800, 600, 0, 0),
              (URect{400, 10, 400, 10}))
        << "no probe is as an unknown one";
}

TEST(DrawHorizontalUSLineClip, ClipsUnknownProbesAsPhasedOnes)
{
    DrawingRecorder recorder;
    // Both ends are the origin (400, 10), a line without length; the edge is at y = 30 there.
    const ULine edge{0, 30, 900, 30};
    EXPECT_EQ(Horizontal(recorder.Dc(), UnknownProbe, 0, edge, edge), (URect{400, 10, 400, 30}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{400, 30, 400, 10}}))
        << "at the start, by the first edge";
    const ULine parallel{0, 0, 0, 9};
    EXPECT_EQ(Horizontal(recorder.Dc(), UnknownProbe, 0, parallel, edge),
              (URect{400, 10, 400, 30}));
    EXPECT_EQ(recorder.TakeStrokes(), (Strokes{{400, 10, 400, 30}}))
        << "at the end, by the second edge";
}

TEST(DrawVerticalUSLineClip, DrawsWhatTheSecondEdgeLeftWhenNeitherClips)
{
    DrawingRecorder recorder;
    const ULine away{5000, 0, 5001, 900};
    // The line goes upwards along element 31: the edges only put the ends in order.
    const URect drawn = SceneOf(Phased).VerticalClip(recorder.Dc(), 31, 400, 10, away, away);
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
    const URect drawn = SceneOf(Phased).VerticalClip(recorder.Dc(), 31, 0, 400, beside, across);
    EXPECT_EQ(drawn.top, 10);
    EXPECT_NEAR(drawn.bottom, 202, 1);
    EXPECT_EQ(recorder.TakeStrokes().size(), 2u) << "the stroke along the edge and the line";
}

TEST(DrawVerticalUSLineClip, LeavesCurvedProbesUnclipped)
{
    const Scene curved = SceneOf({0, 128, 300, 40000, 0});
    DrawingRecorder recorder;
    const ULine edge{0, 450, 800, 450};
    const URect clipped = curved.VerticalClip(recorder.Dc(), 60, 10, 400, edge, edge);
    const Strokes first = recorder.TakeStrokes();
    EXPECT_EQ(clipped, curved.Vertical(recorder.Dc(), 60, 10, 400));
    EXPECT_EQ(first, recorder.TakeStrokes());
}
