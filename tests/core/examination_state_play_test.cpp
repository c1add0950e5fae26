// The state of the exam steps and plays frames, those of a probe too.
#include "ExamStateFixture.h"

#include <utility>

using namespace exam;

TEST_F(ExamStateTest, StepsRoundTheFramesInBothDirections)
{
    m_state.SelectImage(linear);
    m_state.StepFrames(-1);
    EXPECT_EQ(Frame(), 3);
    m_state.StepFrames(6);
    EXPECT_EQ(Frame(), 1);
}

TEST_F(ExamStateTest, AProbeRunsWhileItIsOnDisplayAndNotFrozen)
{
    m_state.AddSimulation(simulation::ProbeShape::linear);
    m_state.SelectImage(2);
    EXPECT_TRUE(m_state.Source().IsSimulated());
    EXPECT_FALSE(m_state.IsFrozen());
    EXPECT_TRUE(m_state.IsFrameReadable()); // though there is none yet
    ASSERT_TRUE(FollowProbe(m_state, 3));
    m_state.SetFrozen(true);
    const int newest = m_state.Source().FirstFrame() + m_state.Source().Frames() - 1;
    m_state.StepFrames(1 - m_state.FramePosition());
    EXPECT_EQ(m_state.Frame(), m_state.Source().FirstFrame());
    EXPECT_EQ(m_state.FramePosition(), 1);
    m_state.StepFrames(-1);
    EXPECT_EQ(m_state.Frame(), newest);
    EXPECT_EQ(m_state.FramesBehind(), 0);
    m_state.SelectImage(linear);
    EXPECT_TRUE(m_state.IsFrozen());
    m_state.SelectImage(2);
    EXPECT_EQ(m_state.Frame(), newest);
    EXPECT_TRUE(FollowProbe(m_state, newest + 1));
}

TEST_F(ExamStateTest, TheStripShowsTheFlowOfTheSourceOnDisplay)
{
    m_state.ShowStrip(true);
    EXPECT_FALSE(m_state.Strip().HasFlow());
    m_state.AddSimulation(simulation::ProbeShape::linear);
    m_state.SelectImage(2);
    ASSERT_TRUE(FollowProbe(m_state, 3));
    const SpectralStrip& strip = m_state.Strip();
    ASSERT_TRUE(strip.HasFlow());
    EXPECT_EQ(strip.ColumnOf(strip.TimeAt(100.5)), 100.5);
    EXPECT_EQ(strip.TimeAt(strip.Plot().right),
              (strip.Flow().firstColumn + strip.Flow().columns) / 100.0);
    m_state.SetFrozen(true);
    const CPoint on(strip.Plot().left + 50, strip.BaselineRow());
    m_state.Press(MK_LBUTTON, on);
    MouseCapture::HandleMouse(WM_MOUSEMOVE, MK_LBUTTON, CPoint(on.x, on.y + 30));
    MouseCapture::HandleMouse(WM_LBUTTONUP, 0, CPoint(on.x, on.y + 30));
    EXPECT_EQ(strip.BaselineRow(), on.y + 30);
    EXPECT_FALSE(MouseCapture::IsLocked());
    m_state.MoveBaseline(30);
    EXPECT_EQ(strip.BaselineRow(), on.y);
    m_state.MoveBaseline(10000);
    EXPECT_GT(strip.BaselineRow(), strip.Plot().top);
    m_state.MoveBaseline(-10000);
    EXPECT_LT(strip.BaselineRow(), strip.Plot().bottom);
    m_state.SelectImage(linear);
    EXPECT_FALSE(m_state.Strip().HasFlow());
    m_state.ShowStrip(false);
    EXPECT_TRUE(m_state.Strip().Plot().IsRectEmpty());
}

TEST_F(ExamStateTest, PlaysTheLoopThatWasChosen)
{
    m_state.SelectImage(linear);
    EXPECT_EQ(m_state.Loop(), std::pair(1, 4));
    m_state.ShowPosition(2);
    m_state.BeginLoop();
    m_state.ShowPosition(3);
    m_state.EndLoop();
    EXPECT_EQ(m_state.Loop(), std::pair(2, 3));
    for (const int expected : {2, 3, 2}) {
        m_state.PlayOn();
        EXPECT_EQ(m_state.FramePosition(), expected);
    }
    m_state.ShowPosition(4); // outside of it
    m_state.PlayOn();
    EXPECT_EQ(m_state.FramePosition(), 2);
    m_state.ShowPosition(1);
    m_state.EndLoop(); // before its beginning
    EXPECT_EQ(m_state.Loop(), std::pair(1, 1));
    m_state.ClearLoop();
    EXPECT_EQ(m_state.Loop(), std::pair(1, 4));
    m_state.BeginLoop();
    m_state.SelectImage(curved);
    EXPECT_EQ(m_state.Loop(), std::pair(1, 1)); // all its frames
}

TEST_F(ExamStateTest, KeepsTheSpeedWithinItsLimits)
{
    for (const auto& [steps, speed] : {std::pair{1, 2.0}, {5, 4.0}, {-3, 0.5}, {-9, 0.25}}) {
        m_state.ChangeSpeed(steps);
        EXPECT_EQ(m_state.Speed(), speed);
    }
}
