// The marks on a frame and on the strip follow the mouse, as the main window passes it on.
#include "base/Painting.h"
#include "measure/MarkBoard.h"
#include "measure/MarkList.h"
#include "record/PixelCanvas.h"
#include "study/MarkValues.h"
#include "SyntheticCine.h"

#include <Utils_Statics/PrecisionMouse.h>

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace synthetic_cine;

namespace {

constexpr int columnsPerSecond = 100;

// A flow towards the probe with beats of 0.8 s, at 40 bins at rest and 100 in systole.
FlowSpectrum Beats(int columns)
{
    FlowSpectrum flow;
    flow.scale = {250, 2500000, 256, 0};
    flow.firstColumn = 1000;
    flow.columns = columns;
    flow.columnsPerSecond = columnsPerSecond;
    flow.levels.resize(static_cast<std::size_t>(columns) * 256);
    flow.traces.resize(static_cast<std::size_t>(columns) * FlowSpectrum::traceCount, 128);
    for (int i = 0; i < columns; ++i)
        flow.traces[static_cast<std::size_t>(i)] = i % 80 < 20 ? 228 : 168;
    return flow;
}

class MarkBoardTest : public testing::Test
{
protected:
    MarkBoardTest()
    {
        Show(Linear(), m_view);
        m_board.Follow({});
    }
    ~MarkBoardTest() override { MouseCapture::Unlock(); }

    void Press(CPoint at) { m_board.Press(MK_LBUTTON, at); }
    static void Move(CPoint to) { MouseCapture::HandleMouse(WM_MOUSEMOVE, MK_LBUTTON, to); }
    static void Release(CPoint at) { MouseCapture::HandleMouse(WM_LBUTTONUP, 0, at); }
    void Drag(CPoint from, CPoint to)
    {
        Press(from);
        Move(to);
        Release(to);
    }
    // The mark of a kind that a drag makes.
    const Mark& Make(MarkKind kind, CPoint from, CPoint to)
    {
        m_board.Choose(kind);
        Drag(from, to);
        return *m_study.Content().marks.back();
    }
    std::size_t Count() const { return m_study.Content().marks.size(); }
    double Value(const Mark& mark, std::size_t index = 0) const
    {
        return ValuesOf(mark, m_study.Content()).at(index).value;
    }
    double Millimetres(double pixels) const
    {
        return pixels * m_view.Parameters().micronsPerPixel.x / 1000.0;
    }
    const Mark& At(int number) const { return *FindMark(m_study.Content(), number); }

    StudyFrame TakeUp()
    {
        if (m_study.Content().objects.empty()) {
            StudyObject object;
            object.image = L"test.cine";
            object.acquisition = {Linear().stream, 0, 0};
            m_study.AddObject(object);
        }
        return {m_study.Content().objects.front()->id, m_frame};
    }

    int m_frame = 0;
    ImageView m_view;
    Study m_study;
    SpectralStrip m_strip;
    MarkBoard m_board{m_study, m_view, m_strip, CRect(0, 0, 300, 280), [this] { return TakeUp(); }};
};

} // namespace

TEST_F(MarkBoardTest, ADragMakesTheMarkThatWasChosen)
{
    const Mark& mark = Make(MarkKind::distance, {120, 100}, {180, 180});
    EXPECT_NEAR(Value(mark), Millimetres(100), 1e-9);
    EXPECT_EQ(mark.number, 1);
    EXPECT_FALSE(m_board.Chosen());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(m_board.Shown(), std::vector<int>{1});
    EXPECT_EQ(m_board.Selected(), 1);
    Drag({150, 30}, {170, 30}); // nothing is chosen
    EXPECT_EQ(Count(), 1u);
}

TEST_F(MarkBoardTest, EachKindHasTheValuesOfItsDrag)
{
    EXPECT_NEAR(Value(Make(MarkKind::angle, {150, 150}, {200, 150})), 60, 1e-6);
    const Mark& ellipse = Make(MarkKind::ellipse, {120, 100}, {200, 100});
    EXPECT_NEAR(Value(ellipse, 1), std::numbers::pi * Millimetres(40) * Millimetres(24) / 100,
                1e-6);
    const Mark& rectangle = Make(MarkKind::rectangle, {110, 60}, {150, 90});
    EXPECT_NEAR(Value(rectangle, 0), Millimetres(40), 1e-9);
    EXPECT_NEAR(Value(rectangle, 1), Millimetres(30), 1e-9);
    EXPECT_EQ(Count(), 3u);
    EXPECT_EQ(m_board.Shown(), (std::vector<int>{1, 2, 3}));
}

TEST_F(MarkBoardTest, ATraceFollowsThePointer)
{
    m_board.Choose(MarkKind::trace);
    Press({120, 100});
    for (const CPoint at : {CPoint(180, 100), CPoint(181, 100), CPoint(180, 160), CPoint(120, 160)})
        Move(at);
    Release({120, 160});
    const Mark& mark = *m_study.Content().marks.back();
    EXPECT_EQ(mark.points.size(), 4u); // one of them is not worth a point
    EXPECT_NEAR(Value(mark, 1), Millimetres(60) * Millimetres(60) / 100, 1e-6);
}

class TraceTest : public MarkBoardTest
{
protected:
    TraceTest()
    {
        m_board.Choose(MarkKind::trace);
        Press({120, 100});
        for (const CPoint at : {CPoint(180, 100), CPoint(180, 160), CPoint(120, 160)})
            Move(at);
        Release({120, 160});
    }
    const std::vector<MarkPoint>& Points() const { return At(1).points; }
};

TEST_F(TraceTest, ItsPointsMoveOneByOne)
{
    const StudyContent before = m_study.Content();
    const std::vector<MarkPoint> points = Points();
    Drag({180, 160}, {210, 190});
    ASSERT_EQ(Points().size(), 4u);
    EXPECT_NE(Points()[2], points[2]);
    for (const std::size_t other : {0u, 1u, 3u})
        EXPECT_EQ(Points()[other], points[other]) << other;
    EXPECT_NEAR(Value(At(1), 1), Millimetres(60) * Millimetres(90) / 100, 1e-6);
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(m_study.Content(), before);
}

TEST_F(TraceTest, APressBetweenTwoPointsMakesOneAndADragMovesIt)
{
    Drag({150, 100}, {150, 70});
    ASSERT_EQ(Points().size(), 5u);
    EXPECT_NEAR(Value(At(1), 1), Millimetres(60) * Millimetres(75) / 100, 1e-6);
    Drag({120, 130}, {90, 130}); // on the line that closes it
    ASSERT_EQ(Points().size(), 6u);
    EXPECT_NEAR(Value(At(1), 1), Millimetres(60) * Millimetres(90) / 100, 1e-6);
    EXPECT_TRUE(m_study.Undo());
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(Points().size(), 4u);
}

TEST_F(TraceTest, ThePointInHandIsTakenOut)
{
    EXPECT_FALSE(m_board.CanRemovePoint()); // none was in hand yet
    Drag({180, 160}, {182, 162});
    const std::vector<MarkPoint> points = Points();
    ASSERT_TRUE(m_board.CanRemovePoint());
    m_board.RemovePoint();
    EXPECT_EQ(Points(), (std::vector<MarkPoint>{points[0], points[1], points[3]}));
    EXPECT_FALSE(m_board.CanRemovePoint());
    Drag({120, 160}, {121, 161});
    EXPECT_FALSE(m_board.CanRemovePoint()); // three are the fewest
    EXPECT_TRUE(m_study.Undo());
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(Points(), points);
}

TEST_F(TraceTest, WithinItTheWholeMovesAndAnotherOneIsMovedByItsOutline)
{
    const std::vector<MarkPoint> points = Points();
    Drag({150, 130}, {150, 140});
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_NE(Points()[i], points[i]);
    EXPECT_NEAR(Value(At(1), 1), Millimetres(60) * Millimetres(60) / 100, 1e-6);
    Make(MarkKind::distance, {60, 250}, {100, 250}); // it is selected now
    Drag({150, 170}, {150, 160});
    EXPECT_EQ(m_board.Selected(), 1);
    ASSERT_EQ(Points().size(), 4u);
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_NEAR(Points()[i].y, points[i].y, 1e-6);
}

TEST_F(MarkBoardTest, APressWithoutADragMakesAMarkOfASizeThatCanBeWorked)
{
    for (const MarkKind kind : {MarkKind::distance, MarkKind::angle, MarkKind::ellipse,
                                MarkKind::trace, MarkKind::rectangle})
        EXPECT_GT(Value(Make(kind, {150, 150}, {151, 150})), 1) << static_cast<int>(kind);
}

TEST_F(MarkBoardTest, EachDragIsOneStep)
{
    Make(MarkKind::distance, {120, 100}, {180, 100});
    const StudyContent made = m_study.Content();
    Press({180, 100});
    Move({190, 110});
    Move({200, 120});
    Release({200, 120});
    EXPECT_NEAR(Value(At(1)), Millimetres(std::hypot(80, 20)), 1e-9);
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(m_study.Content(), made);
    EXPECT_TRUE(m_study.Undo()); // the mark, and the recording that was taken up for it
    EXPECT_EQ(m_study.Content().objects.size(), 0u);
    EXPECT_FALSE(m_study.Undo());
    m_board.Refresh();
    EXPECT_TRUE(m_board.Shown().empty());
}

TEST_F(MarkBoardTest, WhatComesAfterADragIsAnotherStep)
{
    Make(MarkKind::distance, {120, 100}, {180, 100});
    m_study.Rename(1, L"Liver");
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(At(1).text, L"");
}

TEST_F(MarkBoardTest, ALineMovesAsAWholeByWhatLiesBetweenItsPoints)
{
    const Mark before = Make(MarkKind::distance, {120, 100}, {180, 100});
    Drag({150, 103}, {160, 143});
    const Mark& moved = At(1);
    EXPECT_NEAR(Value(moved), Millimetres(60), 1e-6);
    EXPECT_NE(moved.points[0].x, before.points[0].x);
    EXPECT_NE(moved.points[0].y, before.points[0].y);
    const Mark kept = moved;
    Drag({160, 140}, {160, 500}); // it would leave the image
    EXPECT_EQ(At(1), kept);
}

TEST_F(MarkBoardTest, AnEllipseKeepsItsOtherAxisAtARightAngle)
{
    Make(MarkKind::ellipse, {120, 100}, {200, 100});
    Drag({200, 100}, {120, 180}); // turns it by a right angle
    EXPECT_NEAR(Value(At(1), 1), std::numbers::pi * Millimetres(40) * Millimetres(24) / 100, 1e-6);
}

TEST_F(MarkBoardTest, PointsStayInTheImage)
{
    const Mark& mark = Make(MarkKind::distance, {150, 100}, {150, 150});
    Drag({150, 150}, {5000, -5000});
    for (const MarkPoint& point : mark.points) {
        EXPECT_GE(point.x, 0);
        EXPECT_LE(point.x, lines - 1);
        EXPECT_GE(point.y, 0);
        EXPECT_LE(point.y, samples - 1);
    }
    EXPECT_EQ(m_board.Shown().size(), 1u);
}

TEST_F(MarkBoardTest, APressTakesTheSelectedMarkUnlessItHitsAnother)
{
    Make(MarkKind::distance, {120, 100}, {180, 100});
    Make(MarkKind::distance, {120, 200}, {180, 200}); // this one is selected
    Press({120, 140});
    EXPECT_EQ(m_board.Selected(), 2);
    Release({120, 140});
    Drag({120, 105}, {120, 95});
    EXPECT_EQ(m_board.Selected(), 1);
    EXPECT_NEAR(Value(At(1)), Millimetres(std::hypot(60, 5)), 1e-9);
}

TEST_F(MarkBoardTest, ThePrecisionMouseMovesTheLastPointByTenthsOfAPixel)
{
    Make(MarkKind::distance, {120, 100}, {180, 100});
    Drag({180, 100}, {181, 100});
    const StudyContent before = m_study.Content();
    struct Control : IPrecisionControl
    {
        void SetHandler(IPrecisionHandler* handler) override { m_handler = handler; }
        IPrecisionHandler* m_handler = nullptr;
    } control;
    PrecisionMouse::Register(&control);
    Drag({181, 100}, {182, 100});
    ASSERT_NE(control.m_handler, nullptr);
    for (int i = 0; i < 7; ++i)
        control.m_handler->OnPrecisionMove(1, 0);
    EXPECT_NEAR(Value(At(1)), Millimetres(62.7), 1e-9);
    EXPECT_TRUE(m_study.Undo()); // all seven
    EXPECT_NEAR(Value(At(1)), Millimetres(62), 1e-9);
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(m_study.Content(), before);
    m_study.RemoveMark(1);
    m_board.Refresh();
    EXPECT_EQ(control.m_handler, nullptr);
    PrecisionMouse::Unregister(&control);
}

TEST_F(MarkBoardTest, InTrackballStyleAMarkComesWithItsFirstPointInHand)
{
    m_board.SetInput(InputTrackball);
    m_board.Choose(MarkKind::distance);
    ASSERT_EQ(m_board.Shown(), std::vector<int>{1});
    EXPECT_TRUE(m_board.IsWorking());
    Move({100, 140});
    EXPECT_NEAR(Value(At(1)), Millimetres(90), 1);
    EXPECT_TRUE(MouseCapture::LockNext()); // the other end
    Move({200, 140});
    EXPECT_NEAR(Value(At(1)), Millimetres(100), 1);
    EXPECT_TRUE(MouseCapture::LockNext()); // the whole
    Move({150, 170});
    EXPECT_NEAR(Value(At(1)), Millimetres(100), 1);
    EXPECT_TRUE(m_board.Cancel());
    EXPECT_FALSE(m_board.IsWorking());
    m_board.SetInput(InputPointer);
}

TEST_F(MarkBoardTest, TheTrackballStepsThroughTheWholeTraceAndThenItsPoints)
{
    m_board.SetInput(InputTrackball);
    m_board.Choose(MarkKind::trace);
    const std::vector<MarkPoint> before = At(1).points;
    for (std::size_t point = 0; point < 2; ++point) {
        ASSERT_TRUE(MouseCapture::LockNext());
        Move({100, 40});
        std::vector<MarkPoint> moved = At(1).points;
        EXPECT_NE(moved[point], before[point]);
        EXPECT_EQ(moved[point + 1], before[point + 1]);
    }
    m_board.SetInput(InputPointer);
}

TEST_F(MarkBoardTest, ShowsTheMarksOfItsFrameAndLetsGoOfOthers)
{
    Make(MarkKind::distance, {120, 100}, {180, 100});
    Press({180, 100});
    EXPECT_TRUE(m_board.IsWorking());
    m_frame = 1;
    m_board.Follow(TakeUp());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_TRUE(m_board.Shown().empty());
    Make(MarkKind::distance, {120, 100}, {180, 100});
    EXPECT_EQ(m_board.Shown(), std::vector<int>{2});
    m_frame = 0;
    m_board.Follow(TakeUp());
    EXPECT_EQ(m_board.Shown(), std::vector<int>{1});
}

TEST_F(MarkBoardTest, AMarkThatReachesOutOfTheDisplayIsDrawnAsFarAsItIsSeen)
{
    Make(MarkKind::distance, {60, 60}, {240, 200});
    const double length = Value(At(1));
    m_view.ZoomAt(3, {60, 60});
    m_board.Refresh();
    ASSERT_EQ(m_board.Shown(), std::vector<int>{1});
    PixelCanvas canvas(CSize(600, 560));
    m_board.Draw(canvas.Context(), MarkPlace::frame, 1);
    const auto isDrawn = [&](const CRect& part) {
        std::vector<unsigned int> pixels;
        canvas.Cut(part, pixels);
        return std::ranges::any_of(pixels,
                                   [](unsigned int pixel) { return (pixel & 0xFFFFFF) != 0; });
    };
    EXPECT_TRUE(isDrawn(CRect(0, 0, 300, 280)));
    EXPECT_FALSE(isDrawn(CRect(0, 280, 600, 560)));
    EXPECT_FALSE(isDrawn(CRect(300, 0, 600, 280)));
    m_view.ShowWhole();
    Show(Linear(), m_view, samples / 2); // one end is deeper
    m_board.Refresh();
    EXPECT_EQ(m_board.Shown(), std::vector<int>{1});
    EXPECT_EQ(Value(At(1)), length);
}

TEST_F(MarkBoardTest, APointThatIsNotOnDisplayStaysWhereItIs)
{
    Make(MarkKind::distance, {60, 60}, {240, 200});
    m_view.ZoomAt(3, {60, 60});
    m_board.SetInput(InputTrackball);
    m_board.Refresh();
    const std::vector<MarkPoint> before = At(1).points;
    ASSERT_TRUE(MouseCapture::LockNext());
    Move({100, 100});
    const std::vector<MarkPoint> moved = At(1).points;
    EXPECT_NE(moved[0], before[0]);
    EXPECT_EQ(moved[1], before[1]);
    ASSERT_TRUE(MouseCapture::LockNext());
    Move({120, 120});
    EXPECT_EQ(At(1).points, moved);
    m_board.SetInput(InputPointer);
}

TEST_F(MarkBoardTest, AMarkThatGoesWhileItIsInHandIsLetGo)
{
    Make(MarkKind::distance, {120, 100}, {180, 100});
    Press({180, 100});
    m_study.RemoveMark(1);
    m_board.Refresh();
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(m_board.Selected(), 0);
}

TEST_F(MarkBoardTest, ChoosingAgainChoosesNothing)
{
    m_board.Choose(MarkKind::angle);
    EXPECT_EQ(m_board.Chosen(), MarkKind::angle);
    m_board.Choose(MarkKind::angle);
    EXPECT_FALSE(m_board.Chosen());
    m_board.Choose(MarkKind::angle);
    EXPECT_TRUE(m_board.Cancel());
    EXPECT_FALSE(m_board.Cancel());
}

TEST_F(MarkBoardTest, TheStripIsMeasuredByItsSpectra)
{
    m_strip.Place(CRect(0, 0, 290, 200));
    m_strip.Show(Beats(200));
    const CRect plot = m_strip.Plot();
    const int y = m_strip.BaselineRow();
    const double perBin = 1540e6 / (2.0 * 2500000 * 250) / 256;
    const Mark& flow = Make(MarkKind::flow, {plot.right - 160, y}, {plot.right - 1, y});
    EXPECT_NEAR(Value(flow, 0), 100 * perBin, 1e-6);
    EXPECT_NEAR(Value(flow, 1), (20 * 100 + 60 * 40) / 80.0 * perBin, 0.01 * 55 * perBin);
    m_board.Choose(MarkKind::heartRate);
    Drag({plot.right - 199, y}, {plot.right - 1, y});
    EXPECT_NEAR(Value(*m_study.Content().marks.back()), 75, 1e-6);
    EXPECT_NEAR(Value(Make(MarkKind::time, {plot.right - 150, y}, {plot.right - 50, y})), 1, 1e-9);
    const Mark& velocity =
        Make(MarkKind::velocity, {plot.right - 90, y - 20}, {plot.right - 90, y - 40});
    const double perPixel = 256 * perBin / plot.Height();
    EXPECT_NEAR(Value(velocity), 40 * perPixel, perPixel);
    EXPECT_EQ(m_board.Shown().size(), 4u);
    m_strip.Place(CRect());
    m_board.Refresh();
    EXPECT_TRUE(m_board.Shown().empty());
}

TEST_F(MarkBoardTest, TheListGivesALongNameSeveralRows)
{
    Make(MarkKind::distance, {120, 100}, {180, 100});
    PixelCanvas canvas(CSize(120, 100));
    const ScopedFont font(canvas.Context(), ScopedFont::textSize, FW_NORMAL);
    // Names begin at the left edge, and values behind an indent.
    const auto startsInSecondRow = [&](const wchar_t* name) {
        m_study.Rename(1, name);
        canvas.Clear();
        DrawMarkList(canvas.Context(), CRect(0, 0, 120, 100), m_study.Content(), {1}, 0);
        std::vector<unsigned int> pixels;
        canvas.Cut(CRect(0, 20, 10, 34), pixels);
        return std::ranges::any_of(pixels,
                                   [](unsigned int pixel) { return (pixel & 0xFFFFFF) != 0; });
    };
    EXPECT_FALSE(startsInSecondRow(L"Aorta"));
    EXPECT_TRUE(startsInSecondRow(L"Common carotid artery in systole"));
}
