#include "record/Recorder.h"

#include "base/FileReader.h"
#include "base/ScreenLayout.h"
#include "image/AviChunks.h"
#include "image/CineMarks.h"
#include "image/OpenFrames.h"
#include "record/CineCommands.h"
#include "record/MovieFile.h"
#include "record/MovieSettings.h"
#include "screen/Screen.h"

#include <gtest/gtest.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <test_support/ChildTest.h>
#include <test_support/LogCapture.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>
#include <vector>

using namespace exam;

namespace {

CWinApp s_app; // the settings are read through it

// A state that shows the linear recording, with its recorder.
class RecorderTest : public testing::Test
{
protected:
    RecorderTest()
    {
        qor_utils::SetStoreFolder(qor_utils::imagesStore,
                                  test_support::BesideProgram(L"sample\\images"));
        std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
        s_app.m_pszProfileName = _wcsdup((m_folder / L"exam.ini").c_str());
        SetCodec(L"Uncompressed");
        EXPECT_EQ(m_state.AddRecording(L"linear.cine"), L"");
        m_recorder.SetFolder(m_folder.Path());
    }

    void SetCodec(const wchar_t* name)
    {
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", name);
    }

    // Adds frames until one cannot be written, and ends the recording.
    void Record(int frames)
    {
        for (int i = 0; i < frames && m_recorder.AddFrame(); ++i)
            continue;
        m_recorder.Stop();
    }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;
    FinishedRecording m_finished;
    Recorder m_recorder{m_state, [this](CDC& dc) { DrawScreen(dc, m_state, ScreenUse::movie); },
                        [this](const FinishedRecording& recording) { m_finished = recording; }};
};

// The file size limit that check-disk-full sets for this program; 0 without one.
std::size_t FileLimit()
{
    const std::wstring limit = test_support::EnvironmentVariable(L"EXAM_FILE_LIMIT");
    return limit.empty() ? 0 : std::stoul(limit);
}

// The least fourth byte of all pixels of an uncompressed movie; -1 when it has no frame.
int LeastOpacity(const std::wstring& movie)
{
    FileReader file;
    if (!file.Open(movie)) return -1;
    const auto riff = ReadChunk(file, 0, file.Size());
    const auto frames = riff ? FindChunk(file, *riff, mmioFOURCC('m', 'o', 'v', 'i')) : riff;
    int least = -1;
    for (std::int64_t at = frames ? frames->begin : 0; frames && at < frames->end;) {
        const auto frame = ReadChunk(file, at, frames->end);
        if (!frame) return -1;
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(frame->end - frame->begin));
        if (!IsFrame(frame->name) || !file.Read(frame->begin, bytes.data(), bytes.size()))
            return -1;
        for (std::size_t i = 3; i < bytes.size(); i += 4)
            least = least < 0 ? bytes[i] : std::min<int>(least, bytes[i]);
        at = Behind(*frame);
    }
    return least;
}

} // namespace

TEST_F(RecorderTest, TellsOfAWholeRawRecording)
{
    m_recorder.StartRaw();
    Record(3);
    EXPECT_EQ(m_finished.path, m_folder / L"recording-001.cine");
    EXPECT_EQ(m_finished.frames, 3);
    EXPECT_TRUE(m_finished.whole);
    EXPECT_FALSE(m_finished.cutShort);
}

TEST_F(RecorderTest, TellsOfAWholeMovie)
{
    m_recorder.StartMovie();
    Record(3);
    EXPECT_EQ(m_finished.path, m_folder / L"movie-001.avi");
    EXPECT_EQ(m_finished.frames, 3);
    EXPECT_TRUE(m_finished.whole);
    EXPECT_EQ(FindMovieProblem(m_finished.path, 3), L"");
    const OpenedFrames opened = OpenFrames(m_finished.path);
    ASSERT_TRUE(opened.source) << opened.problem.c_str();
    EXPECT_EQ(opened.source->Frames(), 3);
}

TEST_F(RecorderTest, MoviesAreOpaqueInEveryPlayer)
{
    m_state.ShowStrip(true); // each of the composition's planes is there
    m_recorder.StartMovie();
    Record(2);
    EXPECT_EQ(LeastOpacity(m_finished.path), 255);
    ASSERT_TRUE(ReplayCine(test_support::BesideProgram(L"sample\\images\\linear.cine"),
                           m_folder / L"replayed.avi", false));
    EXPECT_EQ(LeastOpacity(m_folder / L"replayed.avi"), 255);
}

TEST_F(RecorderTest, TellsItsTimeAndWhatIsLeft)
{
    m_recorder.StartRaw();
    EXPECT_EQ(m_recorder.Running().seconds, 0);
    EXPECT_FALSE(m_recorder.Running().secondsLeft); // there is no rate yet
    for (int i = 0; i < 100 && m_recorder.Running().seconds < 1; ++i) {
        EXPECT_TRUE(m_recorder.AddFrame());
        Sleep(25); // frames come at a rate
    }
    const RunningRecording running = m_recorder.Running();
    EXPECT_EQ(running.frames, m_recorder.Frames());
    EXPECT_GE(running.seconds, 1);
    std::error_code error;
    const auto space = std::filesystem::space(m_folder.Path(), error).available;
    ASSERT_TRUE(running.bytesLeft && running.secondsLeft);
    EXPECT_NEAR(static_cast<double>(*running.bytesLeft), static_cast<double>(space), 2e8);
    const double written = 76 + 128.0 * 1536 * running.frames; // bytes in these seconds
    EXPECT_NEAR(static_cast<double>(*running.secondsLeft) * written,
                static_cast<double>(*running.bytesLeft * running.seconds), written);
    m_recorder.Stop();
}

TEST_F(RecorderTest, AMovieHasNoMoreRoomThanItsFormat)
{
    m_recorder.StartMovie();
    ASSERT_TRUE(m_recorder.Running().bytesLeft);
    EXPECT_LE(*m_recorder.Running().bytesLeft, 0x7FFFFFFF);
    m_recorder.Stop();
}

TEST_F(RecorderTest, ANewRecordingHasNoMarksOfAnOlderOne)
{
    const std::wstring path = m_folder / L"recording-001.cine";
    EXPECT_TRUE(AddMark(path, 7));
    m_recorder.StartRaw();
    m_recorder.AddFrame();
    m_recorder.Mark();
    EXPECT_EQ(ReadMarks(path), std::vector<int>{0});
    Record(0);
    m_recorder.StartRaw();
    m_recorder.Mark();
    Record(0);
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"recording-002.cine.marks"));
}

TEST_F(RecorderTest, RecordsNoMovieWhenTheSettingOfTheCodecCannotBeKept)
{
    std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
    s_app.m_pszProfileName = _wcsdup((m_folder / L"no\\such\\exam.ini").c_str());
    EXPECT_EQ(PrepareMovieSettings(), std::nullopt);
    m_recorder.StartMovie();
    EXPECT_FALSE(m_recorder.IsRecording());
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"movie-001.avi"));
}

TEST_F(RecorderTest, RecordsWithACodecWhoseNameIsWrittenInAnotherCase)
{
    SetCodec(L"uncomPRESSED");
    m_recorder.StartMovie();
    Record(2);
    EXPECT_EQ(m_finished.frames, 2);
    EXPECT_TRUE(m_finished.whole);
    EXPECT_EQ(s_app.GetProfileString(L"Settings\\Capture", L"RecordCodec"), L"Uncompressed");
}

TEST_F(RecorderTest, LeavesTheNameOfACodecThatIsNotInstalled)
{
    SetCodec(L"None such");
    EXPECT_EQ(PrepareMovieSettings(), L"None such");
    EXPECT_EQ(FindCodec(L"None such"), std::nullopt);
}

TEST_F(RecorderTest, SaysWhatAQualityBecomesThatIsNotAllowed)
{
    const std::pair<const wchar_t*, int> qualities[] = {
        {L"101", 100}, {L"-1", 0}, {L"99999999999", 100}, {L"best", 100}, {L"50%", 100}};
    for (const auto& [stored, used] : qualities) {
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordQuality", stored);
        test_support::LogCapture log;
        EXPECT_NE(PrepareMovieSettings(), std::nullopt);
        EXPECT_EQ(s_app.GetProfileInt(L"Settings\\Capture", L"RecordQuality", -1), UINT(used));
        const auto messages = log.Take();
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_EQ(messages[0].level, qor_utils::warningLevel);
        EXPECT_EQ(messages[0].text, std::wstring(L"RecordQuality is '") + stored +
                                        L"'; movies are recorded with " + std::to_wstring(used) +
                                        L" percent.");
    }
}

TEST_F(RecorderTest, LeavesAQualityThatIsAllowed)
{
    for (const wchar_t* const stored : {L"0", L"1", L"075", L"100"}) {
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordQuality", stored);
        test_support::LogCapture log;
        EXPECT_NE(PrepareMovieSettings(), std::nullopt);
        EXPECT_EQ(s_app.GetProfileString(L"Settings\\Capture", L"RecordQuality"), stored);
        EXPECT_TRUE(log.Take().empty());
    }
}

TEST_F(RecorderTest, NeverRecordsOverAFile)
{
    for (const wchar_t* const name : {L"movie-001.avi", L"movie-002.avi"}) {
        m_recorder.StartMovie();
        Record(1);
        EXPECT_EQ(m_finished.path, m_folder / name);
    }
}

TEST_F(RecorderTest, RecordsIntoAFolderThatTheCodePageCannotName)
{
    const std::wstring folder = m_folder / L"\u8d85\u58f0";
    m_recorder.SetFolder(folder);
    m_recorder.StartMovie();
    Record(2);
    EXPECT_EQ(m_finished.path, folder + L"\\movie-001.avi");
    EXPECT_TRUE(m_finished.whole);
    EXPECT_TRUE(std::filesystem::exists(m_finished.path));
}

TEST_F(RecorderTest, DiskFullCutsARawRecordingShortAndKeepsItWhole)
{
    const std::size_t limit = FileLimit();
    if (limit == 0) GTEST_SKIP() << "needs a limit on the size of files; check-disk-full sets one";
    constexpr std::size_t frameSize = 128 * 1536;
    m_recorder.StartRaw();
    Record(50);
    EXPECT_EQ(m_finished.frames, static_cast<int>((limit - 76) / frameSize));
    EXPECT_TRUE(m_finished.whole);
    EXPECT_TRUE(m_finished.cutShort);
}

// Frames of this codec are small enough to wait in buffers until the movie is closed.
TEST_F(RecorderTest, DiskFullLeavesAMovieThatIsSaidNotToBeWhole)
{
    if (FileLimit() == 0)
        GTEST_SKIP() << "needs a limit on the size of files; check-disk-full sets one";
    if (!FindCodec(L"MJPG")) GTEST_SKIP() << "the codec MJPG is not installed";
    SetCodec(L"MJPG");
    m_recorder.StartMovie();
    Record(50);
    EXPECT_GT(m_finished.frames, 0);
    EXPECT_FALSE(m_finished.whole);
}

TEST_F(RecorderTest, ARecordingWithoutAFrameLeavesNoFile)
{
    for (const bool isMovie : {false, true}) {
        EXPECT_FALSE((isMovie ? m_recorder.StartMovie() : m_recorder.StartRaw()).IsEmpty());
        EXPECT_TRUE(m_recorder.IsRecording());
        m_recorder.Stop();
        EXPECT_EQ(m_finished.frames, 0);
        EXPECT_FALSE(m_finished.cutShort);
        for (const wchar_t* const name :
             {L"recording-001.cine", L"movie-001.avi", L"movie-001.avi.unfinished"})
            EXPECT_FALSE(std::filesystem::exists(m_folder / name)) << name;
    }
}
