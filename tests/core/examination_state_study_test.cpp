// The state of the exam keeps measurements and frames in a study.
#include "ExamStateFixture.h"
#include "image/CineFile.h"
#include "study/MarkValues.h"

#include <base/GdiPlusSession.h>
#include <base/Handles.h>
#include <test_support/DibSection.h>
#include <test_support/Files.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/GetStr.h>

#include <filesystem>
#include <vector>

using namespace exam;

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

TEST_F(ExamStateTest, MarksThatGoWithTheOneInHandAreGoneForAllWhoHear)
{
    const ImagingParameters& image = m_state.View().Parameters();
    Measure(image.Pixel(40, 1300), image.Pixel(40, 1600));
    Measure(image.Pixel(60, 300), image.Pixel(60, 600));
    Measure(image.Pixel(80, 1300), image.Pixel(80, 1600));
    struct Listener : ::IStateChangeConsumer
    {
        explicit Listener(const ExamState& state) : m_state(state) {}
        void OnStateChange(StateChangeType, unsigned int, long) override
        {
            m_shown = m_state.Marks().Shown();
        }
        const ExamState& m_state;
        std::vector<int> m_shown;
    } listener(m_state);
    m_state.Press(MK_LBUTTON, m_state.Layout().image.TopLeft() + image.Pixel(80, 1600));
    ASSERT_TRUE(m_state.Marks().IsWorking());
    m_state.ChangeDepth(-5);
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(listener.m_shown, std::vector<int>{2});
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
    ASSERT_NO_FATAL_FAILURE(HoldAProbe());
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

namespace {

// True when nobody has the file open.
bool IsClosed(const std::wstring& path)
{
    return static_cast<bool>(
        base::File(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)));
}

} // namespace

TEST_F(ExamStateTest, OnlyTheFileOnDisplayIsOpen)
{
    const std::wstring first = m_folder / L"curved.cine";
    const std::wstring second = m_folder / L"linear.cine";
    EXPECT_TRUE(!IsClosed(first) && IsClosed(second));
    m_state.SelectImage(linear);
    EXPECT_TRUE(IsClosed(first) && !IsClosed(second));
    m_state.SelectImage(curved);
    EXPECT_TRUE(!IsClosed(first) && IsClosed(second));
    ASSERT_NO_FATAL_FAILURE(HoldAProbe());
    for (int frames = 1; frames <= 3; ++frames) {
        Measure({300, 200}, {300, 300});
        EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
        m_state.StepFrames(-1);
    }
    for (const wchar_t* const kept : {L"001", L"002", L"003"})
        EXPECT_TRUE(IsClosed(m_folder / L"S1\\simulated-" + kept + L".cine")) << kept;
    EXPECT_TRUE(IsClosed(first) && IsClosed(second));
    m_state.SelectImage(linear);
    EXPECT_TRUE(m_state.IsFrameReadable());
}

TEST_F(ExamStateTest, AFileThatWasChangedWhileItWasClosedIsOpenedAnew)
{
    m_state.SelectImage(linear);
    const CineDescription before = m_state.Source().Description();
    m_state.SelectImage(curved);
    const CineDescription other = m_state.Source().Description();
    const std::wstring path = m_folder / L"linear.cine";
    ASSERT_TRUE(CopyFileW((m_folder / L"curved.cine").c_str(), path.c_str(), FALSE));
    m_state.SelectImage(linear);
    EXPECT_TRUE(m_state.IsFrameReadable());
    EXPECT_NE(m_state.Source().Description().stream, before.stream);
    EXPECT_EQ(m_state.Source().Description().stream, other.stream);
    EXPECT_EQ(m_state.View().Parameters().lines, other.stream.lines);
    m_state.SelectImage(curved);
    test_support::WriteFile(path, "no recording");
    m_state.SelectImage(linear);
    EXPECT_FALSE(m_state.IsFrameReadable());
}

TEST_F(ExamStateTest, UndoTakesTheFrameOfAProbeAwayAndRedoBringsItBack)
{
    ASSERT_NO_FATAL_FAILURE(HoldAProbe());
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
    ASSERT_NO_FATAL_FAILURE(HoldAProbe());
    Measure({300, 200}, {300, 300});
    EXPECT_TRUE(m_state.Undo());
    Measure({310, 200}, {310, 300});
    EXPECT_TRUE(std::filesystem::exists(m_folder / L"S1\\simulated-001.cine"));
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
}

TEST_F(ExamStateTest, AnotherFrameOfAProbeNeverTakesTheNameOfOneThatWasTakenAway)
{
    ASSERT_NO_FATAL_FAILURE(HoldAProbe());
    Measure({300, 200}, {300, 300});
    EXPECT_TRUE(m_state.Undo());
    m_state.StepFrames(-1);
    Measure({310, 200}, {310, 300});
    EXPECT_TRUE(std::filesystem::exists(m_folder / L"S1\\simulated-002.cine"));
    m_state.StepFrames(1);
    EXPECT_TRUE(m_state.Marks().Shown().empty());
}

TEST_F(ExamStateTest, AFrameOfAnotherStudyIsNotTakenForOneOfTheSameName)
{
    ASSERT_NO_FATAL_FAILURE(HoldAProbe());
    Measure({300, 200}, {300, 300});
    m_state.OpenStudy({}, m_folder / L"S2");
    m_state.StepFrames(-1);
    Measure({310, 200}, {310, 300});
    std::vector<std::uint8_t> live;
    std::vector<std::uint8_t> kept;
    ASSERT_TRUE(m_state.Source().ReadFrame(m_state.Frame(), live));
    const FrameSource* const named = m_state.SourceNamed(L"simulated-001.cine");
    ASSERT_TRUE(named && named->ReadFrame(0, kept));
    EXPECT_EQ(kept, live);
    m_state.SelectImage(3); // the frame of the other study
    EXPECT_TRUE(m_state.Marks().Shown().empty());
}

TEST_F(ExamStateTest, AnImageOfTheStudyIsOpenedAgainWithItsMarks)
{
    ASSERT_NO_FATAL_FAILURE(HoldAProbe());
    Measure({300, 200}, {300, 300});
    m_state.CloseImage(L"simulated-001.cine");
    EXPECT_EQ(m_state.OpenImage(m_folder / L"S1\\simulated-001.cine"), L"");
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
    EXPECT_TRUE(m_state.SourceNamed(L"simulated-001.cine"));
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
