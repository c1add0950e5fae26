// The state of the exam, which no window is needed for.
#include "base/ScreenLayout.h"
#include "base/StateChanges.h"
#include "state/ExamState.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/MouseCapture.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <utility>
#include <vector>

using namespace exam;

namespace {

constexpr std::size_t curved = 0;
constexpr std::size_t linear = 1; // has four frames

class ExamStateTest : public testing::Test, private IStateChangeConsumer
{
protected:
    ExamStateTest()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
        // Copies, because a test damages one.
        qor_utils::SetStoreFolder(qor_utils::imagesStore, m_folder.Path());
        for (const wchar_t* const name : {L"curved.cine", L"linear.cine"}) {
            const std::wstring original = test_support::BesideProgram(L"sample\\images\\") + name;
            EXPECT_TRUE(CopyFileW(original.c_str(), (m_folder / name).c_str(), TRUE));
            EXPECT_EQ(m_state.AddRecording(name), L"");
        }
        m_changes.clear();
    }
    ~ExamStateTest() override { zel_string_convert::ClearTable(); }

    // The changes that were told since the last call.
    std::vector<int> Changes() { return std::exchange(m_changes, {}); }

    int Frame() const { return m_state.Frame(); }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;

private:
    void OnStateChange(StateChangeType type, unsigned int, long) override
    {
        m_changes.push_back(type);
    }

    std::vector<int> m_changes;
};

} // namespace

TEST_F(ExamStateTest, BeginsFrozenOnTheFirstRecordingWithoutAnythingElse)
{
    EXPECT_EQ(m_state.Current(), curved);
    EXPECT_GT(m_state.View().Parameters().lines, 0);
    EXPECT_TRUE(m_state.IsFrozen());
    EXPECT_FALSE(m_state.IsStripShown());
    EXPECT_EQ(m_state.Gain(), 0);
    EXPECT_EQ(m_state.Rotation(), 0);
    EXPECT_TRUE(m_state.Status().IsEmpty());
    EXPECT_FALSE(m_state.Recording());
    for (const ImageTool* const tool : m_state.Tools().All())
        EXPECT_FALSE(tool->IsVisible());
}

TEST_F(ExamStateTest, SaysWhichRecordingCannotBeAdded)
{
    EXPECT_NE(m_state.AddRecording(L"missing.cine").find(L"missing.cine"), std::wstring::npos);
    m_state.NextImage();
    m_state.NextImage();
    EXPECT_EQ(m_state.Current(), curved); // there are two
}

TEST_F(ExamStateTest, ShowsTheNextImageAndBeginsAnew)
{
    m_state.SelectImage(linear);
    EXPECT_EQ(m_state.View().Parameters().lines, 128);
    m_state.StepFrames(3);
    EXPECT_EQ(Frame(), 3);
    m_state.NextImage();
    EXPECT_EQ(m_state.Current(), curved);
    m_state.NextImage();
    EXPECT_EQ(m_state.Current(), linear);
    EXPECT_EQ(Frame(), 0);
    m_state.SelectImage(7); // there is none
    EXPECT_EQ(m_state.Current(), linear);
}

TEST_F(ExamStateTest, StepsRoundTheFramesInBothDirections)
{
    m_state.SelectImage(linear);
    m_state.StepFrames(-1);
    EXPECT_EQ(Frame(), 3);
    m_state.StepFrames(6);
    EXPECT_EQ(Frame(), 1);
}

TEST_F(ExamStateTest, TellsWhatAChangeConcerns)
{
    m_state.StepFrames(1);
    EXPECT_EQ(Changes(), std::vector<int>{stateImageChanged});
    m_state.SelectImage(linear);
    const std::vector<int> fitted = Changes();
    ASSERT_FALSE(fitted.empty());
    EXPECT_EQ(fitted.front(), stateFitChanged);
    EXPECT_EQ(fitted.back(), stateImageChanged);
    m_state.ChangeGain(3);
    EXPECT_EQ(Changes(), std::vector<int>{stateImageChanged});
    m_state.NextLanguage();
    EXPECT_EQ(Changes(), std::vector<int>{stateLanguageChanged});
    m_state.SetFrozen(false);
    m_state.ShowStrip(true);
    m_state.Rotate(10);
    m_state.SetInput(InputPointer);
    m_state.SetStatus(L"a sentence");
    m_state.SetRecording(RunningRecording{true, 1});
    EXPECT_EQ(Changes(), std::vector<int>(6, stateDisplayChanged));
    m_state.Tools().Angle().Show(true);
    EXPECT_EQ(Changes(), std::vector<int>{stateMeasurementChanged});
}

TEST_F(ExamStateTest, KeepsGainAndDepthWithinTheirLimits)
{
    for (const auto& [decibels, gain] : {std::pair{-100, -20}, {15, -5}, {100, 20}}) {
        m_state.ChangeGain(decibels);
        EXPECT_EQ(m_state.Gain(), gain);
    }
    const int whole = m_state.DepthMillimetres();
    m_state.ChangeDepth(-100);
    EXPECT_NEAR(m_state.DepthMillimetres(), whole / 2.0, 1);
    Changes();
    m_state.ChangeDepth(-1);
    EXPECT_TRUE(Changes().empty());
    m_state.ChangeDepth(100);
    EXPECT_EQ(m_state.DepthMillimetres(), whole);
}

TEST_F(ExamStateTest, AMeasurementKeepsItsValueAndItsPlaceAtAnotherDepth)
{
    DistanceCaliper& caliper = m_state.Tools().Distance();
    caliper.Show(true);
    const ImagingParameters& image = m_state.View().Parameters();
    caliper.SetPoints({image.Pixel(60, 300), image.Pixel(60, 900)});
    const std::vector<CPoint> points = caliper.Points();
    const double value = caliper.Millimetres();
    m_state.ChangeDepth(-2);
    EXPECT_TRUE(caliper.IsVisible());
    EXPECT_EQ(caliper.Millimetres(), value);
    for (const auto& [point, sample] : {std::pair{0, 300}, {1, 900}}) {
        const CPoint expected = image.Pixel(60, sample);
        EXPECT_NEAR(caliper.Points()[static_cast<std::size_t>(point)].x, expected.x, 2);
        EXPECT_NEAR(caliper.Points()[static_cast<std::size_t>(point)].y, expected.y, 2);
    }
    m_state.ChangeDepth(2);
    EXPECT_EQ(caliper.Points(), points);
    EXPECT_EQ(caliper.Millimetres(), value);
}

TEST_F(ExamStateTest, AMeasurementIsHiddenWhereTheImageDoesNotReach)
{
    DistanceCaliper& caliper = m_state.Tools().Distance();
    caliper.Show(true);
    const ImagingParameters& image = m_state.View().Parameters();
    caliper.SetPoints({image.Pixel(120, 300), image.Pixel(120, image.samples - 50)});
    const double value = caliper.Millimetres();
    m_state.ChangeDepth(-5);
    EXPECT_FALSE(caliper.IsVisible());
    EXPECT_TRUE(caliper.IsOutside());
    caliper.Show(true); // changes nothing
    EXPECT_FALSE(caliper.IsVisible());
    m_state.ChangeDepth(5);
    EXPECT_TRUE(caliper.IsVisible());
    EXPECT_EQ(caliper.Millimetres(), value);
}

TEST_F(ExamStateTest, EachFrameHasItsOwnMeasurement)
{
    m_state.SelectImage(linear);
    DistanceCaliper& caliper = m_state.Tools().Distance();
    caliper.Show(true);
    const CPoint elsewhere = m_state.View().Parameters().Pixel(60, 300);
    caliper.SetPoints({elsewhere});
    const double value = caliper.Millimetres();
    m_state.StepFrames(1);
    EXPECT_FALSE(caliper.IsVisible());
    EXPECT_NE(caliper.Points()[0], elsewhere);
    caliper.Show(true);
    caliper.SetPoints({m_state.View().Parameters().Pixel(30, 800)});
    EXPECT_EQ(m_state.Tools().Measured(), 2);
    m_state.SelectImage(curved);
    EXPECT_FALSE(caliper.IsVisible());
    m_state.SelectImage(linear);
    EXPECT_TRUE(caliper.IsVisible());
    EXPECT_EQ(caliper.Points()[0], elsewhere);
    EXPECT_EQ(caliper.Millimetres(), value);
    caliper.Clear();
    EXPECT_FALSE(caliper.IsVisible());
    EXPECT_EQ(m_state.Tools().Measured(), 1);
}

TEST_F(ExamStateTest, LetsGoOfAPointWhenTheFrameChanges)
{
    m_state.SelectImage(linear);
    m_state.Tools().Distance().Show(true);
    m_state.Tools().Press(MK_LBUTTON,
                          m_state.Tools().Distance().Points()[0] + ConsoleLayout().image.TopLeft());
    EXPECT_TRUE(MouseCapture::IsLocked());
    m_state.StepFrames(1);
    EXPECT_FALSE(MouseCapture::IsLocked());
}

TEST_F(ExamStateTest, APressTakesAPointOfTheToolInHand)
{
    DistanceCaliper& caliper = m_state.Tools().Distance();
    AngleTool& angle = m_state.Tools().Angle();
    caliper.Show(true);
    angle.Show(true);
    const CPoint middle = m_state.View().ImagedRect().CenterPoint();
    const CPoint corner = ConsoleLayout().image.TopLeft();
    caliper.SetPoints({middle, middle + CPoint(60, 0)});
    angle.SetPoints({middle + CPoint(0, 50), middle + CPoint(0, 150), middle + CPoint(80, 150)});
    m_state.Tools().Press(MK_LBUTTON, corner + middle + CPoint(0, 20)); // nearer to the caliper
    EXPECT_EQ(MouseCapture::GetLock(), &angle);
    MouseCapture::Unlock();
    m_state.Tools().Press(MK_LBUTTON, corner + middle + CPoint(2, 2)); // on the caliper's point
    EXPECT_EQ(MouseCapture::GetLock(), &caliper);
    MouseCapture::Unlock();
    m_state.Tools().Press(MK_LBUTTON, corner + middle + CPoint(0, 30)); // nearer to the angle
    EXPECT_EQ(MouseCapture::GetLock(), &caliper);
    MouseCapture::Unlock();
    caliper.Show(false);
    angle.Show(false);
}

TEST_F(ExamStateTest, TurnsTheOutlineRoundAndRound)
{
    m_state.Rotate(-150);
    EXPECT_EQ(m_state.Rotation(), 3450);
    m_state.Rotate(300);
    EXPECT_EQ(m_state.Rotation(), 150);
    m_state.Rotate(-150 - 36000);
    EXPECT_EQ(m_state.Rotation(), 0);
}

// Shows what a probe has made meanwhile, until its frame has this number.
bool FollowProbe(ExamState& state, int frame)
{
    const ULONGLONG end = GetTickCount64() + 20000;
    while (state.Frame() < frame && GetTickCount64() < end) {
        if (const int behind = state.FramesBehind(); behind > 0) state.StepFrames(behind);
        Sleep(5);
    }
    return state.Frame() >= frame;
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
    m_state.SelectImage(linear);
    EXPECT_FALSE(m_state.Strip().HasFlow());
    m_state.ShowStrip(false);
    EXPECT_TRUE(m_state.Strip().Plot().IsRectEmpty());
}

TEST_F(ExamStateTest, SwitchesBetweenTheLanguages)
{
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"en");
    m_state.NextLanguage();
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
    m_state.NextLanguage();
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"en");
}

TEST_F(ExamStateTest, ChoosesTheInputStyleAndLetsGoOfAPoint)
{
    m_state.Tools().Distance().Show(true);
    m_state.SetInput(InputTrackball);
    EXPECT_EQ(MouseCapture::GetInput(), InputTrackball);
    MouseCapture::LockNext();
    EXPECT_TRUE(MouseCapture::IsLocked());
    m_state.SetInput(InputPointer);
    EXPECT_EQ(MouseCapture::GetInput(), InputPointer);
    EXPECT_FALSE(MouseCapture::IsLocked());
    m_state.Tools().Distance().Show(false);
}

TEST_F(ExamStateTest, KeepsTheImageAndSaysSoWhenAFrameCannotBeRead)
{
    m_state.SelectImage(linear);
    const base::File file(CreateFileW((m_folder / L"linear.cine").c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    SetFilePointer(file.get(), 76 + 2 * 128 * 1536, nullptr, FILE_BEGIN); // two frames are left
    ASSERT_TRUE(SetEndOfFile(file.get()));
    m_state.StepFrames(1);
    EXPECT_TRUE(m_state.IsFrameReadable());
    const auto grey = m_state.View().GreyLevels();
    const std::vector<std::uint8_t> before(grey.begin(), grey.end());
    m_state.StepFrames(1);
    EXPECT_FALSE(m_state.IsFrameReadable());
    EXPECT_EQ(m_state.Status(), GetStr("exam.image.unreadable", 3));
    const auto after = m_state.View().GreyLevels();
    EXPECT_EQ(before, std::vector<std::uint8_t>(after.begin(), after.end()));
    m_state.StepFrames(-1);
    EXPECT_TRUE(m_state.IsFrameReadable());
}
