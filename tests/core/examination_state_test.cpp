// The state of the exam needs no window.
#include "base/StateChanges.h"
#include "ExamStateFixture.h"
#include "ImagedRect.h"

#include <base/Handles.h>
#include <Utils_Statics/GetStr.h>
#include <zel_string_convert/ZelTString.h>

#include <utility>
#include <vector>

using namespace exam;

TEST_F(ExamStateTest, BeginsFrozenOnTheFirstRecordingWithoutAnythingElse)
{
    EXPECT_EQ(m_state.Current(), curved);
    EXPECT_GT(m_state.View().Parameters().lines, 0);
    EXPECT_TRUE(m_state.IsFrozen());
    EXPECT_FALSE(m_state.IsStripShown());
    EXPECT_EQ(m_state.Gain(), 0);
    EXPECT_EQ(m_state.ImageOrientation(), Orientation());
    EXPECT_TRUE(m_state.Status().IsEmpty());
    EXPECT_FALSE(m_state.Recording());
    EXPECT_TRUE(m_state.Marks().Shown().empty());
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
    m_state.SetInput(InputPointer);
    m_state.SetStatus(L"a sentence");
    m_state.SetRecording(RunningRecording{true, 1});
    std::vector<int> told = Changes();
    std::erase(told, stateMeasurementChanged);
    EXPECT_EQ(told, std::vector<int>(5, stateDisplayChanged));
    m_state.Marks().Choose(MarkKind::angle);
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

TEST_F(ExamStateTest, TurnsTheImageByQuartersRoundAndRound)
{
    for (const auto& [degrees, quarters] : {std::pair{90, 1},
                                            {15, 2},
                                            {180, 0},
                                            {-15, 3},
                                            {-90, 2},
                                            {360, 2},
                                            {-3600, 2},
                                            {0, 2},
                                            {91, 0}}) {
        m_state.Rotate(degrees);
        EXPECT_EQ(m_state.ImageOrientation().quarters, quarters) << degrees;
        const CRect imaged = ImagedRect(m_state.View());
        EXPECT_FALSE(imaged.IsRectEmpty());
        EXPECT_EQ(m_state.View().Parameters().Size(), m_state.Layout().image.Size());
    }
}

TEST_F(ExamStateTest, KeepsTheGreyWindowUntilItIsReset)
{
    const CPoint pixel = m_state.View().Parameters().Pixel(60, 600);
    const int before = m_state.View().Grey(pixel);
    ASSERT_GT(before, 0);
    m_state.MoveGreyWindow(-128, -1000);
    EXPECT_EQ(m_state.View().Grey(pixel), 255);
    m_state.SelectImage(linear);
    m_state.SelectImage(curved);
    EXPECT_EQ(m_state.View().Grey(pixel), 255);
    EXPECT_EQ(m_state.Levels(), (GreyWindow{0, 1}));
    m_state.ResetGreyWindow();
    EXPECT_EQ(m_state.View().Grey(pixel), before);
}

TEST_F(ExamStateTest, OpensARecordingFromAnywhereOnce)
{
    const std::wstring copy = m_folder / L"copy.cine";
    ASSERT_TRUE(CopyFileW((m_folder / L"linear.cine").c_str(), copy.c_str(), TRUE));
    EXPECT_EQ(m_state.OpenImage(copy), L"");
    EXPECT_EQ(m_state.Current(), 2u);
    m_state.SelectImage(curved);
    EXPECT_EQ(m_state.OpenImage(copy), L"");
    EXPECT_EQ(m_state.Current(), 2u);
    EXPECT_NE(m_state.OpenImage(m_folder / L"no.cine").find(L"no.cine"), std::wstring::npos);
    EXPECT_EQ(m_state.Current(), 2u);
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
    m_state.SetInput(InputTrackball);
    EXPECT_EQ(MouseCapture::GetInput(), InputTrackball);
    m_state.ChooseMark(MarkKind::distance);
    EXPECT_TRUE(MouseCapture::IsLocked());
    m_state.SetInput(InputPointer);
    EXPECT_EQ(MouseCapture::GetInput(), InputPointer);
    EXPECT_FALSE(MouseCapture::IsLocked());
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
    EXPECT_EQ(m_state.Status(), GetStr("exam.image.unreadable", 3, L"linear.cine"));
    const auto after = m_state.View().GreyLevels();
    EXPECT_EQ(before, std::vector<std::uint8_t>(after.begin(), after.end()));
    m_state.StepFrames(-1);
    EXPECT_TRUE(m_state.IsFrameReadable());
}
