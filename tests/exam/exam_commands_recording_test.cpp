// Commands record, and the screen tells of it meanwhile.
#include "base/Palette.h"
#include "base/ScreenLayout.h"
#include "commands/Commands.h"
#include "CommandsFixture.h"
#include "image/LiveProbe.h"
#include "record/MovieSettings.h"
#include "record/PixelCanvas.h"
#include "screen/RecordingText.h"
#include "screen/Timeline.h"

#include <test_support/ChildTest.h>
#include <test_support/Program.h>
#include <Utils_Statics/GetStr.h>
#include <zel_string_convert/TableLoading.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

using namespace exam;

TEST_F(CommandsTest, OnlyOneRecordingRunsAtATime)
{
    EXPECT_TRUE(IsPossible('C') && IsPossible('V'));
    Press('C');
    EXPECT_TRUE(IsOn('C'));
    EXPECT_FALSE(IsPossible('V'));
    Press('V');
    CarryOut(L"Document", L"RecordMovie");
    EXPECT_TRUE(m_state.Recording() && !m_state.Recording()->isMovie);
    m_exam.Advance();
    EXPECT_EQ(m_state.Recording()->frames, 1);
    Press('C');
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.record.finished", 1, (m_folder / L"recording-001.cine").c_str()));
    EXPECT_TRUE(IsPossible('V'));
}

TEST_F(CommandsTest, MarksStayWithTheRecordingThatOneKeyOpens)
{
    const std::wstring path = m_folder / L"recording-001.cine";
    m_state.SelectImage(1);
    EXPECT_FALSE(IsPossible(VK_F8));
    Press(VK_F9);
    EXPECT_EQ(m_state.Status(), GetStr("exam.record.none"));
    Press('C');
    for (int frame = 1; frame <= 4; ++frame) {
        m_exam.Advance();
        if (frame % 2 == 0) Press(VK_F8);
    }
    EXPECT_EQ(m_state.Status(), GetStr("exam.record.marked", 4, path.c_str()));
    Press('C');
    m_state.SetStatus(L"something else");
    m_exam.FollowStatus();
    EXPECT_EQ(m_state.Current(), 1u);
    Press(VK_F9);
    EXPECT_EQ(m_state.Status(), GetStr("exam.image.opened", path.c_str()));
    EXPECT_EQ(m_state.Source().Frames(), 4);
    EXPECT_TRUE(std::ranges::equal(m_state.Source().Marks(), std::vector<int>{1, 3}));
}

// A limit on the size of files, which check-disk-full sets, stands for the disk.
TEST_F(CommandsTest, AFullDiskIsToldWithTheFileAndWhatCanBeDone)
{
    const std::wstring limit = test_support::EnvironmentVariable(L"EXAM_FILE_LIMIT");
    if (limit.empty())
        GTEST_SKIP() << "needs a limit on the size of files; check-disk-full sets one";
    constexpr int frameSize = 128 * 1536;
    const int frames = (std::stoi(limit) - 76) / frameSize;
    const std::wstring path = m_folder / L"recording-001.cine";
    m_state.SelectImage(1);
    Press('C');
    for (int i = 0; i <= frames; ++i)
        m_exam.Advance();
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_state.Status(), frames == 0 ? GetStr("exam.record.unwritable", path.c_str())
                                            : GetStr("exam.record.broken", path.c_str(), frames));
    EXPECT_EQ(std::filesystem::exists(path), frames > 0);
}

TEST_F(CommandsTest, AMissingCodecIsToldWithTheFileAndWhatCanBeDone)
{
    s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"none such");
    Press('V');
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.record.nocodec", (m_folder / L"movie-001.avi").c_str(), L"none such"));
    EXPECT_GE(m_state.Status().Find(KeyName(*CommandOfKey(VK_F12))), 0); // opens the settings
}

TEST_F(CommandsTest, EveryCodecThatIsOfferedRecords)
{
    for (const std::wstring& codec : InstalledCodecs()) {
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", codec.c_str());
        Press('V');
        m_exam.Advance();
        ASSERT_TRUE(m_state.Recording()) << codec;
        EXPECT_EQ(m_state.Recording()->frames, 1) << codec;
        m_exam.EndRecording();
    }
}

TEST_F(CommandsTest, TheTimelineShowsTheMarks)
{
    const std::wstring path = m_folder / L"marked.cine";
    std::filesystem::copy_file(test_support::BesideProgram(L"sample\\images\\linear.cine"), path);
    for (const char* const marks : {"", "2\nnonsense\n99\n-1\n"}) {
        std::ofstream(std::filesystem::path(path + L".marks")) << marks;
        ExamState state;
        state.SetLayout(WindowLayout({.client = {1280, 800}}), {0, 0});
        EXPECT_EQ(state.OpenImage(path), L"");
        PixelCanvas picture(state.Layout().client);
        DrawTimeline(picture.Context(), state);
        std::vector<unsigned int> pixels;
        picture.Cut(state.Layout().timeline, pixels);
        const bool isMarked = std::ranges::count(pixels, 0xFFAAB8C8u) > 0; // palette::scale
        EXPECT_EQ(isMarked, *marks != 0);
    }
}

TEST_F(CommandsTest, TheScreenTellsTheTimeOfARecordingAndWhatIsLeft)
{
    RunningRecording recording{false, 12, 65};
    EXPECT_EQ(RecordingTimeText(recording), L"REC 1:05");
    EXPECT_EQ(RecordingRoomText(recording), L"12 frames");
    recording.secondsLeft = 3725;
    recording.bytesLeft = 3'440'000'000;
    EXPECT_EQ(RecordingRoomText(recording), L"12 frames, 1:02:05 left, 3.4 GB free");
    recording.bytesLeft = 999'000'000;
    zel_string_convert::SetLanguage(L"de");
    EXPECT_EQ(RecordingRoomText(recording), L"12 Bilder, noch 1:02:05, 999 MB frei");
}

TEST_F(CommandsTest, AClickOnItsSentenceOpensAFinishedMovie)
{
    s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
    Press('V');
    m_exam.Advance();
    Press('V');
    m_exam.FollowStatus();
    EXPECT_EQ(m_state.Status(), GetStr("exam.image.opened", (m_folder / L"movie-001.avi").c_str()));
}

TEST_F(CommandsTest, ARecordingEndsWhenTheImageHasAnotherSize)
{
    for (const auto change : {+[](ExamState& state) { state.NextImage(); },
                              +[](ExamState& state) { state.ChangeDepth(-1); }}) {
        Press('C');
        m_state.StepFrames(1);
        EXPECT_TRUE(m_state.Recording());
        change(m_state);
        EXPECT_FALSE(m_state.Recording());
    }
}

TEST_F(CommandsTest, FramesRunUnlessTheyAreFrozenOrWhileTheyAreRecorded)
{
    m_state.SelectImage(1);  // it has four frames
    m_state.ChangeSpeed(-2); // so that the next one is not due while the test runs on
    EXPECT_EQ(m_exam.PlayInterval(), std::nullopt);
    m_state.SetFrozen(false);
    const std::optional<unsigned> interval = m_exam.PlayInterval();
    ASSERT_TRUE(interval);
    EXPECT_LT(*interval, 1000 / m_state.Source().FramesPerSecond() / 2);
    const int first = m_state.Frame();
    m_exam.Play();
    m_exam.Play(); // before the next frame is due
    EXPECT_EQ(m_state.Frame(), (first + 1) % m_state.Source().Frames());
    m_state.SetFrozen(true);
    Press('C');
    EXPECT_EQ(m_exam.PlayInterval(), interval);
    CarryOut(L"Console", L"Cancel");
    EXPECT_EQ(m_exam.PlayInterval(), std::nullopt);
}

TEST_F(CommandsTest, ARecordingOfNoFrameSaysSo)
{
    Press('C');
    Press('C');
    EXPECT_EQ(m_state.Status(), GetStr("exam.record.empty"));
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"recording-001.cine"));
}

TEST_F(CommandsTest, FramesThatAProbeHasDroppedAreNotRecordedInAnotherOrder)
{
    m_state.AddSimulation(simulation::ProbeShape::linear);
    m_state.SelectImage(2);
    Press('C');
    const ULONGLONG end = GetTickCount64() + 30000;
    while (m_state.Source().FirstFrame() < 20 && GetTickCount64() < end)
        Sleep(20);
    ASSERT_GE(m_state.Source().FirstFrame(), 20);
    const int newest = m_state.Frame() + m_state.FramesBehind();
    m_exam.Advance();
    EXPECT_GE(m_state.Frame(), newest);
    EXPECT_LE(m_state.Recording()->frames, LiveProbe::mostFrames);
    Press('C');
}

TEST_F(CommandsTest, NothingIsFrozenWhileFramesAreRecorded)
{
    Press('C');
    EXPECT_FALSE(m_state.IsFrozen());
    CarryOut(L"Imaging", L"Freeze"); // the frames stand, and so does the recording
    EXPECT_EQ(m_exam.PlayInterval(), std::nullopt);
    EXPECT_TRUE(m_state.Recording());
    CarryOut(L"Imaging", L"Freeze");
    EXPECT_NE(m_exam.PlayInterval(), std::nullopt);
    Press('C');
    EXPECT_TRUE(m_state.IsFrozen()); // as before the recording
    m_state.SetFrozen(false);
    Press('C');
    Press('C');
    EXPECT_FALSE(m_state.IsFrozen());
}

TEST_F(CommandsTest, AFinishedRecordingThatWasRemovedIsNotOpened)
{
    Press('C');
    m_exam.Advance();
    Press('C');
    m_window.m_answer = true;
    ASSERT_TRUE(m_exam.RemoveStudyImage(m_folder / L"recording-001.cine"));
    Press(VK_F9);
    EXPECT_EQ(m_state.Status(), GetStr("exam.record.none"));
}
