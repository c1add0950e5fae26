#include <Utils_Statics/CImgGeometry.h>

#include <afxwin.h>
#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <random>
#include <vector>

namespace {

// A device context that records what is drawn on it: every LineTo with where it started.
class Recorder
{
public:
    Recorder() : m_metafile(CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr)) { m_dc.Attach(m_metafile); }
    ~Recorder()
    {
        m_dc.Detach();
        DeleteEnhMetaFile(CloseEnhMetaFile(m_metafile));
    }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    CDC* Dc() { return &m_dc; }

    std::vector<ULine> Strokes()
    {
        m_dc.Detach();
        const HENHMETAFILE file = CloseEnhMetaFile(m_metafile);
        Reader reader;
        EnumEnhMetaFile(nullptr, file, &Reader::Record, &reader, nullptr);
        DeleteEnhMetaFile(file);
        m_metafile = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
        m_dc.Attach(m_metafile);
        return reader.strokes;
    }

private:
    struct Reader
    {
        POINTL at{};
        std::vector<ULine> strokes;

        static int CALLBACK Record(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM context)
        {
            auto& reader = *reinterpret_cast<Reader*>(context);
            if (record->iType != EMR_MOVETOEX && record->iType != EMR_LINETO) return 1;
            const POINTL to = reinterpret_cast<const EMRLINETO*>(record)->ptl;
            if (record->iType == EMR_LINETO) reader.strokes.push_back({reader.at.x, reader.at.y, to.x, to.y});
            reader.at = to;
            return 1;
        }
    };

    HDC m_metafile;
    CDC m_dc;
};

using Strokes = std::vector<ULine>;

} // namespace

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
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({5, 0, 5, 10}, {9, 3, 9, 4}, pt)) << "two vertical ones";
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({0, 0, 10, 20}, {3, 0, 8, 10}, pt)) << "the same slope";
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({0, 4, 10, 4}, {3, 9, 8, 9}, pt)) << "two horizontal ones";
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({5, 5, 5, 5}, {9, 3, 9, 4}, pt)) << "a point counts as vertical";
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
    // In double precision the slopes 1/3 and 0.333333343... differ; as single-precision values they are one.
    UPoint pt;
    EXPECT_FALSE(CImgGeometry::GetIntersectPt({0, 0, 3, 1}, {0, 5, 33554433, 11184816}, pt));
    // 16777217 is not a single-precision number.
    ASSERT_TRUE(CImgGeometry::GetIntersectPt({0, 16777217, 10, 16777217}, {4, 0, 4, 9}, pt));
    EXPECT_EQ(pt, (UPoint{4, 16777216}));
}

TEST(GetIntersectPt, StopsAtTheLimitsForAbsurdLines)
{
    UPoint pt;
    EXPECT_TRUE(CImgGeometry::GetIntersectPt({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {0, INT_MAX, 1, INT_MIN}, pt));
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
    Recorder recorder;
    const ULine edge{100, 0, 40, 300}; // x = 80 at y = 100
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {0, 100, 200, 100}, edge, out, true));
    EXPECT_EQ(out, (ULine{80, 100, 200, 100}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {200, 100, 0, 100}, edge, out, false));
    EXPECT_EQ(out, (ULine{0, 100, 80, 100}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {0, 100, 200, 109}, edge, out, true)) << "nine pixels of rise";
    EXPECT_EQ(out.x2, 200);
    EXPECT_EQ(out.y2, 109);
    EXPECT_FALSE(CImgGeometry::ClipLines(recorder.Dc(), {81, 100, 200, 100}, edge, out, true)) << "all inside";
    EXPECT_EQ(out, (ULine{81, 100, 200, 100}));
    EXPECT_TRUE(recorder.Strokes().empty());
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
    Recorder recorder;
    const ULine edge{100, 0, 200, 100}; // x = y + 100
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 200, 150, 0}, edge, out, true));
    EXPECT_EQ(out, (ULine{150, 0, 150, 50})) << "ordered by y, the lower end clipped";
    EXPECT_EQ(recorder.Strokes(), (Strokes{{150, 50, 300, 50}})) << "to the edge's x at the line's lower end";
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {150, 0, 150, 200}, edge, out, false)) << "at either end";
    EXPECT_EQ(out, (ULine{150, 0, 150, 50}));
}

TEST(ClipLines, LeavesALineThatEndsAboveASlopingEdge)
{
    ULine out;
    // They would meet at (150, 50), below both ends.
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {150, 40, 150, 10}, {100, 0, 200, 100}, out, true));
    EXPECT_EQ(out, (ULine{150, 10, 150, 40})) << "ordered by y";
}

TEST(ClipLines, LeavesALineThatStartsBelowASlopingEdge)
{
    ULine out;
    const ULine edge{100, 0, 200, 100};
    // They meet at (150, 50), above the line: it is replaced by the edge between the line's heights.
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {150, 60, 150, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{190, 90, 160, 60})) << "the lower point first";
    // Above the image the intersection does not count: y = 0, so false.
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {100, 60, 100, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{100, 60, 100, 90}));
    EXPECT_TRUE(CImgGeometry::ClipLines(nullptr, {101, 60, 101, 90}, edge, out, true)) << "y = 1 does";
}

TEST(ClipLines, LeavesALineWhoseIntersectionIsAboveItsLowerEndOnly)
{
    // The intersection lies between the heights and not between the x values: not possible for one straight line but
    // for rounding; so all that is left is an edge below the start.
    ULine out;
    EXPECT_FALSE(CImgGeometry::ClipLines(nullptr, {0, 0, 10, 100}, {0, 500, 100, 501}, out, true));
}

TEST(ClipLines, MovesALineBesideAVerticalEdgeOntoIt)
{
    Recorder recorder;
    const ULine edge{100, 0, 100, 50};
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {20, 10, 60, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{100, 10, 100, 90})) << "only the x values";
    EXPECT_FALSE(CImgGeometry::ClipLines(recorder.Dc(), {20, 10, 60, 90}, edge, out, false));
    EXPECT_EQ(out, (ULine{20, 10, 60, 90}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {160, 10, 120, 90}, edge, out, false));
    EXPECT_EQ(out, (ULine{100, 90, 100, 10})) << "ordered by x before";
    EXPECT_TRUE(recorder.Strokes().empty());
}

TEST(ClipLines, CutsALineAtAVerticalEdgeWithAStrokeAlongIt)
{
    Recorder recorder;
    const ULine edge{100, 0, 100, 50};
    ULine out;
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {80, 10, 120, 90}, edge, out, true));
    EXPECT_EQ(out, (ULine{100, 50, 120, 90}));
    EXPECT_EQ(recorder.Strokes(), (Strokes{{100, 50, 100, 90}}));
    EXPECT_TRUE(CImgGeometry::ClipLines(recorder.Dc(), {80, 10, 120, 90}, edge, out, false));
    EXPECT_EQ(out, (ULine{80, 10, 100, 50}));
    EXPECT_EQ(recorder.Strokes(), (Strokes{{100, 50, 100, 90}}));
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
    return CImgGeometry::DrawHorizontalUSLineClip(dc, 300, -20, 50, Origin, Scale, 7700000, 0, scanB, probe, 1540,
                                                  clip1, clip2, 0, 800, 600, 0, 0);
}

} // namespace

TEST(DrawHorizontalUSLineClip, ClipsAPhasedLineAtTheSectorsEdge)
{
    Recorder recorder;
    const URect drawn = Horizontal(recorder.Dc(), &Phased, 0);
    const Strokes strokes = recorder.Strokes();
    ASSERT_FALSE(strokes.empty());
    const ULine& last = strokes.back();
    EXPECT_EQ(drawn, (URect{std::min(last.x1, last.x2), std::min(last.y1, last.y2), std::max(last.x1, last.x2),
                            std::max(last.y1, last.y2)}));
    // The left edge is x + y = 410.
    EXPECT_TRUE(std::abs(last.x1 + last.y1 - 410) <= 1 || std::abs(last.x2 + last.y2 - 410) <= 1);
}

TEST(DrawHorizontalUSLineClip, DrawsExtendedSectorsAndLinearProbesWhole)
{
    for (const ZelProbe* probe : {&Linear, &Phased}) {
        Recorder recorder;
        const int scanB = probe == &Phased ? 10000 : 0;
        Horizontal(recorder.Dc(), probe, scanB);
        const Strokes clipped = recorder.Strokes();
        CImgGeometry::DrawHorizontalUSLine(recorder.Dc(), 300, -20, 50, Origin, Scale, 7700000, 0, scanB, probe, 1540,
                                           0, 800, 600, 0, 0);
        EXPECT_EQ(clipped, recorder.Strokes());
        EXPECT_EQ(clipped.size(), 1u);
    }
}

TEST(DrawHorizontalUSLineClip, DrawsUnknownProbesToo)
{
    Recorder recorder;
    // Both ends are the origin, and parallel lines do not clip: a line of no length is drawn.
    const ULine vertical{0, 0, 0, 9};
    EXPECT_EQ(Horizontal(recorder.Dc(), &UnknownProbe, 1, vertical, vertical), (URect{400, 10, 400, 10}));
    EXPECT_EQ(recorder.Strokes(), (Strokes{{400, 10, 400, 10}}));
    EXPECT_EQ(Horizontal(recorder.Dc(), nullptr, 1), (URect{400, 10, 400, 10})) << "no probe is as an unknown one";
}

TEST(DrawVerticalUSLineClip, ClipsTheSecondEdgeWhenTheFirstDoesNot)
{
    Recorder recorder;
    // Element 31 runs almost straight down from the origin; the first edge is beside it, the second crosses it.
    const ULine beside{0, 0, 0, 9}; // vertical at 0: the line is to its right, and the start is clipped: not met
    const ULine across{300, 200, 500, 205};
    const URect drawn = CImgGeometry::DrawVerticalUSLineClip(recorder.Dc(), 31, 0, 400, Origin, Scale, 7700000, 0, 0,
                                                             &Phased, 1540, beside, across, 0, 800, 600, 0, 0);
    EXPECT_EQ(drawn.top, 10);
    EXPECT_NEAR(drawn.bottom, 202, 1);
    EXPECT_EQ(recorder.Strokes().size(), 2u) << "the stroke along the edge and the line";
}

TEST(DrawVerticalUSLineClip, LeavesCurvedProbesUnclipped)
{
    const ZelProbe curved{0, 128, 300, 40000, 0};
    Recorder recorder;
    const ULine edge{0, 450, 800, 450};
    const URect clipped = CImgGeometry::DrawVerticalUSLineClip(recorder.Dc(), 60, 10, 400, Origin, Scale, 7700000, 0, 0,
                                                               &curved, 1540, edge, edge, 0, 800, 600, 0, 0);
    const Strokes first = recorder.Strokes();
    const URect whole = CImgGeometry::DrawVerticalUSLine(recorder.Dc(), 60, 10, 400, Origin, Scale, 7700000, 0, 0,
                                                         &curved, 1540, 0, 800, 600, 0, 0);
    EXPECT_EQ(clipped, whole);
    EXPECT_EQ(first, recorder.Strokes());
}
