// The state of the exam, which no window is needed for.
#include "base/ScreenLayout.h"
#include "base/StateChanges.h"
#include "image/CineFile.h"
#include "state/ExamState.h"
#include "study/MarkValues.h"

#include <base/GdiPlusSession.h>
#include <base/Handles.h>
#include <gtest/gtest.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/DibSection.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/MouseCapture.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <filesystem>
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

    // Makes a distance by a drag, in pixels of the image.
    void Measure(CPoint from, CPoint to)
    {
        const CPoint corner = m_state.Layout().image.TopLeft();
        m_state.Marks().ChooseNothing();
        m_state.Marks().Choose(MarkKind::distance);
        m_state.Marks().Press(MK_LBUTTON, corner + from);
        MouseCapture::HandleMouse(WM_MOUSEMOVE, MK_LBUTTON, corner + to);
        MouseCapture::HandleMouse(WM_LBUTTONUP, 0, corner + to);
    }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;

private:
    void OnStateChange(StateChangeType type, unsigned int, long) override
    {
        m_changes.push_back(type);
    }

    std::vector<int> m_changes;
};

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

} // namespace

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

TEST_F(ExamStateTest, AMeasurementKeepsItsPlaceAtAnotherDepthAndHidesWhereTheImageEnds)
{
    const ImagingParameters& image = m_state.View().Parameters();
    Measure(image.Pixel(60, 1300), image.Pixel(60, 1600));
    const StudyContent made = m_state.Content();
    m_state.ChangeDepth(-1);
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
    m_state.ChangeDepth(-4);
    EXPECT_TRUE(m_state.Marks().Shown().empty());
    m_state.ChangeDepth(5);
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
    EXPECT_EQ(m_state.Content(), made);
}

TEST_F(ExamStateTest, EachFrameHasItsOwnMeasurements)
{
    m_state.SelectImage(linear);
    Measure({300, 200}, {300, 300});
    m_state.StepFrames(1);
    EXPECT_TRUE(m_state.Marks().Shown().empty());
    Measure({300, 200}, {300, 300});
    EXPECT_EQ(m_state.Marks().Shown(), std::vector<int>{2});
    m_state.SelectImage(curved);
    EXPECT_TRUE(m_state.Marks().Shown().empty());
    m_state.SelectImage(linear);
    EXPECT_EQ(m_state.Marks().Shown(), std::vector<int>{1});
    EXPECT_EQ(m_state.Content().objects.size(), 1u);
}

TEST_F(ExamStateTest, SaysWhenAStudyHasRoomForNoMoreMarks)
{
    Measure({300, 200}, {300, 300});
    StudyContent content = m_state.Content();
    const Mark mark = *content.marks.front();
    while (content.marks.size() < Study::mostMarks) {
        Mark next = mark;
        next.number = ++content.lastNumber;
        content.marks.emplace_back(next);
    }
    m_state.OpenStudy(content, m_folder / L"S1");
    m_state.ChooseMark(MarkKind::distance);
    m_state.Press(MK_LBUTTON, m_state.Layout().image.CenterPoint());
    MouseCapture::Unlock();
    EXPECT_EQ(m_state.Status(), GetStr("exam.marks.full", 1000));
    EXPECT_EQ(m_state.Content(), content);
}

TEST_F(ExamStateTest, LetsGoOfAPointWhenTheFrameChanges)
{
    m_state.SelectImage(linear);
    Measure({300, 200}, {300, 300});
    m_state.Marks().Press(MK_LBUTTON, m_state.Layout().image.TopLeft() + CPoint(300, 300));
    EXPECT_TRUE(MouseCapture::IsLocked());
    m_state.StepFrames(1);
    EXPECT_FALSE(MouseCapture::IsLocked());
}

TEST_F(ExamStateTest, AStudyBringsItsRecordingsAndMarks)
{
    Measure({300, 200}, {300, 300});
    StudyContent content = m_state.Content();
    StudyObject missing;
    missing.id = L"O7";
    missing.image = L"missing.cine";
    content.objects.emplace_back(missing);
    EXPECT_NE(m_state.OpenStudy(content, m_folder / L"S1").find(L"missing.cine"),
              std::wstring::npos);
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
    EXPECT_FALSE(m_state.Undo()); // the steps are those of this study
    EXPECT_EQ(m_state.OpenStudy({}, m_folder / L"S2"), L"");
    EXPECT_TRUE(m_state.Marks().Shown().empty());
}

TEST_F(ExamStateTest, AMeasuredFrameOfAProbeIsKeptAndSaysThatItIsSimulated)
{
    m_state.OpenStudy({}, m_folder / L"S1");
    m_state.AddSimulation(simulation::ProbeShape::linear);
    m_state.SelectImage(2);
    ASSERT_TRUE(FollowProbe(m_state, 3));
    m_state.ChooseMark(MarkKind::distance);
    EXPECT_TRUE(m_state.IsFrozen());
    Measure({300, 200}, {300, 300});
    Measure({340, 200}, {340, 300});
    EXPECT_EQ(m_state.Marks().Shown().size(), 2u);
    CineFile kept;
    ASSERT_EQ(kept.Open(m_folder / L"S1\\simulated-001.cine"), L"");
    EXPECT_TRUE(kept.IsSimulated());
    std::vector<std::uint8_t> live;
    std::vector<std::uint8_t> file;
    EXPECT_TRUE(m_state.Source().ReadFrame(m_state.Frame(), live) && kept.ReadFrame(0, file));
    EXPECT_EQ(live, file);
    m_state.StepFrames(-1);
    EXPECT_TRUE(m_state.Marks().Shown().empty());
    m_state.SelectImage(3); // the frame that was kept
    EXPECT_EQ(m_state.Marks().Shown().size(), 2u);
}

TEST_F(ExamStateTest, UndoTakesTheFrameOfAProbeAwayAndRedoBringsItBack)
{
    m_state.OpenStudy({}, m_folder / L"S1");
    m_state.AddSimulation(simulation::ProbeShape::linear);
    m_state.SelectImage(2);
    ASSERT_TRUE(FollowProbe(m_state, 3));
    m_state.ChooseMark(MarkKind::distance);
    Measure({300, 200}, {300, 300});
    const std::wstring path = m_folder / L"S1\\simulated-001.cine";
    const std::string bytes = test_support::ReadFile(path);
    ASSERT_FALSE(bytes.empty());
    m_state.SelectImage(3); // the file
    EXPECT_TRUE(m_state.Undo());
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(m_state.Current(), 2u); // the probe
    EXPECT_EQ(m_state.SourceNamed(L"simulated-001.cine"), nullptr);
    EXPECT_TRUE(m_state.Redo());
    EXPECT_EQ(test_support::ReadFile(path), bytes);
    m_state.SelectImage(3);
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
}

TEST_F(ExamStateTest, AFrameThatWasTakenAwayIsKeptAgainForANewMark)
{
    m_state.OpenStudy({}, m_folder / L"S1");
    m_state.AddSimulation(simulation::ProbeShape::linear);
    m_state.SelectImage(2);
    ASSERT_TRUE(FollowProbe(m_state, 3));
    m_state.ChooseMark(MarkKind::distance);
    Measure({300, 200}, {300, 300});
    EXPECT_TRUE(m_state.Undo());
    Measure({310, 200}, {310, 300});
    EXPECT_TRUE(std::filesystem::exists(m_folder / L"S1\\simulated-001.cine"));
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
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
        const CRect imaged = m_state.View().ImagedRect();
        EXPECT_FALSE(imaged.IsRectEmpty());
        EXPECT_EQ(m_state.View().Parameters().Size(), m_state.Layout().image.Size());
    }
}

TEST_F(ExamStateTest, AMeasurementKeepsItsPlaceOnTheTissueInEachOrientation)
{
    const ImagingParameters& image = m_state.View().Parameters();
    Measure(image.Pixel(60, 300), image.Pixel(60, 1079));
    const StudyContent made = m_state.Content();
    const ImagingParameters upright = image;
    for (int i = 0; i < 16; ++i) {
        m_state.Rotate(90);
        if (i % 4 == 3) m_state.FlipSides();
        if (i % 8 == 7) m_state.FlipDepth();
        EXPECT_EQ(m_state.Marks().Shown(), std::vector<int>{1});
        EXPECT_EQ(m_state.Content(), made);
        // Its grip is taken where the tissue is now.
        m_state.Press(MK_LBUTTON, m_state.Layout().image.TopLeft() + image.Pixel(60, 300));
        EXPECT_TRUE(MouseCapture::IsLocked());
        MouseCapture::Unlock();
        EXPECT_EQ(m_state.Content(), made);
    }
    EXPECT_EQ(m_state.ImageOrientation(), Orientation());
    EXPECT_EQ(image.Pixel(60, 300), upright.Pixel(60, 300));
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

TEST_F(ExamStateTest, APictureHasMarksAndNoMillimetres)
{
    const std::wstring path = m_folder / L"picture.png";
    {
        const base::GdiPlusSession session;
        const test_support::DibSection picture(400, 300, 32, test_support::DibSection::topDown);
        ASSERT_TRUE(SaveBitmap(picture.get(), 3, path.c_str()));
    }
    ASSERT_EQ(m_state.OpenImage(path), L"");
    EXPECT_EQ(m_state.DepthMillimetres(), 0);
    Measure({300, 200}, {380, 200});
    ASSERT_EQ(m_state.Marks().Shown().size(), 1u);
    const Mark made = *m_state.Content().marks.front();
    EXPECT_TRUE(ValuesOf(made, m_state.Content()).empty());
    const CPoint corner = m_state.Layout().image.TopLeft();
    m_state.Press(MK_LBUTTON, corner + CPoint(340, 200)); // moves it as a whole
    MouseCapture::HandleMouse(WM_MOUSEMOVE, MK_LBUTTON, corner + CPoint(340, 230));
    MouseCapture::HandleMouse(WM_LBUTTONUP, 0, corner + CPoint(340, 230));
    const Mark& moved = *m_state.Content().marks.front();
    EXPECT_NEAR(moved.points[0].x, made.points[0].x, 1e-6);
    EXPECT_GT(moved.points[0].y, made.points[0].y + 5);
    EXPECT_NEAR(moved.points[1].y, moved.points[0].y, 1e-6);
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
