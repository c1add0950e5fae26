// Recordings that a killed process leaves are repaired.
#include "record/Repair.h"

#include "../core/SyntheticCine.h"
#include "image/CineFile.h"
#include "image/OpenFrames.h"
#include "record/MovieFile.h"
#include "record/MovieNote.h"
#include "record/MovieSettings.h"
#include "record/Recorder.h"
#include "screen/Screen.h"

#include <base/Handles.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

using namespace exam;
using test_support::EnvironmentVariable;
using test_support::FileExists;
using test_support::ReadFile;
using test_support::WriteFile;

namespace {

CWinApp s_app; // the settings are read through it

constexpr int recordedFrames = 6;

class RepairTest : public testing::Test
{
protected:
    // Lets a process record, and kills it. The recording is in the folder.
    void RecordAndKill(const std::wstring& codec)
    {
        SetEnvironmentVariableW(L"EXAM_REPAIR_FOLDER", m_folder.Path().c_str());
        SetEnvironmentVariableW(L"EXAM_REPAIR_CODEC", codec.c_str());
        test_support::ChildTest child("RepairTest.DISABLED_RecordsUntilItIsKilled");
        for (int waited = 0; waited < 600 && !FileExists(m_folder / L"ready"); ++waited)
            Sleep(100);
        ASSERT_TRUE(FileExists(m_folder / L"ready"));
        child.Kill();
    }

    void ExpectRepairedMovie(const std::wstring& codec)
    {
        RecordAndKill(codec);
        const std::wstring movie = m_folder / L"movie-001.avi";
        EXPECT_NE(FindMovieProblem(movie, 1), L"");
        EXPECT_TRUE(ReadNote(movie));
        const std::vector<Repaired> repaired = RepairFolder(m_folder.Path());
        ASSERT_EQ(repaired.size(), 1u);
        EXPECT_EQ(repaired[0].path, movie);
        EXPECT_EQ(repaired[0].problem, L"");
        EXPECT_GE(repaired[0].frames, recordedFrames - 1); // the platform may hold the last one
        EXPECT_EQ(FindMovieProblem(movie, repaired[0].frames), L"");
        const OpenedFrames opened = OpenFrames(movie);
        ASSERT_TRUE(opened.source) << opened.problem.c_str();
        EXPECT_EQ(opened.source->Frames(), repaired[0].frames);
        EXPECT_FALSE(ReadNote(movie));
        EXPECT_TRUE(RepairFolder(m_folder.Path()).empty());
        ExpectPlays(movie, repaired[0].frames);
    }

    // The platform itself reads every frame.
    static void ExpectPlays(const std::wstring& movie, int frames)
    {
        AVIFileInit();
        PAVISTREAM stream = nullptr;
        ASSERT_EQ(
            AVIStreamOpenFromFileW(&stream, movie.c_str(), streamtypeVIDEO, 0, OF_READ, nullptr),
            S_OK);
        AVISTREAMINFOW info{};
        AVIStreamInfoW(stream, &info, sizeof info);
        EXPECT_EQ(info.dwLength, static_cast<DWORD>(frames));
        EXPECT_EQ(info.dwRate / info.dwScale, 10u); // as the recording
        PGETFRAME decoder = AVIStreamGetFrameOpen(stream, nullptr);
        EXPECT_NE(decoder, nullptr);
        for (int i = 0; decoder && i < frames; ++i) {
            const auto* const picture =
                static_cast<const BITMAPINFOHEADER*>(AVIStreamGetFrame(decoder, i));
            ASSERT_NE(picture, nullptr) << i;
            EXPECT_EQ(picture->biWidth, 1024);
            EXPECT_EQ(std::abs(picture->biHeight), 768);
        }
        if (decoder) AVIStreamGetFrameClose(decoder);
        AVIStreamRelease(stream);
        AVIFileExit();
    }

    // Writes a raw cine of two whole frames and half a third, whose count is `count`.
    std::wstring WriteCine(std::int32_t count)
    {
        CineDescription cine = synthetic_cine::Linear();
        CCineStore store;
        const std::wstring path = m_folder / L"recording-001.cine";
        EXPECT_TRUE(store.InitStorage(path.c_str(), cine.type, cine.stream, cine.steerAngle,
                                      cine.apexAngle, cine.lineOffset, cine.apertureLines, 0, 0));
        store.EndStorage();
        std::string bytes = ReadFile(path);
        std::memcpy(bytes.data() + 4, &count, sizeof count);
        bytes += std::string(frameSize, 'a') + std::string(frameSize, 'b') +
                 std::string(frameSize / 2, 'c');
        WriteFile(path, bytes);
        return path;
    }

    static constexpr std::size_t frameSize =
        std::size_t{synthetic_cine::lines} * synthetic_cine::samples;
    test_support::TemporaryFolder m_folder;
};

} // namespace

// Runs in the child process.
TEST_F(RepairTest, DISABLED_RecordsUntilItIsKilled)
{
    const std::wstring folder = EnvironmentVariable(L"EXAM_REPAIR_FOLDER");
    qor_utils::SetStoreFolder(qor_utils::imagesStore,
                              test_support::BesideProgram(L"sample\\images"));
    std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
    s_app.m_pszProfileName = _wcsdup((folder + L"\\exam.ini").c_str());
    const std::wstring codec = EnvironmentVariable(L"EXAM_REPAIR_CODEC");
    s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", codec.c_str());
    ExamState state;
    ASSERT_EQ(state.AddRecording(L"linear.cine"), L"");
    Recorder recorder(
        state, [&](CDC& dc) { DrawScreen(dc, state, ScreenUse::movie); }, nullptr);
    recorder.SetFolder(folder);
    if (codec.empty())
        recorder.StartRaw();
    else
        recorder.StartMovie();
    for (int i = 0; i < recordedFrames && recorder.AddFrame(); ++i)
        state.StepFrames(1);
    WriteFile(folder + L"\\ready", "");
    Sleep(INFINITE);
}

TEST_F(RepairTest, AnUncompressedMovieThatWasKilledPlaysAgain)
{
    ExpectRepairedMovie(L"Uncompressed");
}

TEST_F(RepairTest, ACompressedMovieThatWasKilledPlaysAgain)
{
    if (!FindCodec(L"MJPG")) GTEST_SKIP() << "the codec MJPG is not installed";
    ExpectRepairedMovie(L"MJPG");
}

TEST_F(RepairTest, AMovieWithoutItsNoteTellsItsSizeByItsFrames)
{
    RecordAndKill(L"Uncompressed");
    const std::wstring movie = m_folder / L"movie-001.avi";
    RemoveNote(movie);
    EXPECT_TRUE(RepairFolder(m_folder.Path()).empty()); // it may be anything
    const Repaired repaired = RepairRecording(movie);
    EXPECT_EQ(repaired.problem, L"");
    EXPECT_EQ(FindMovieProblem(movie, repaired.frames), L"");
}

TEST_F(RepairTest, ARawRecordingThatWasKilledIsWholeAgain)
{
    RecordAndKill(L"");
    const std::wstring path = m_folder / L"recording-001.cine";
    const std::vector<Repaired> repaired = RepairFolder(m_folder.Path());
    ASSERT_EQ(repaired.size(), 1u);
    EXPECT_EQ(repaired[0].problem, L"");
    EXPECT_EQ(repaired[0].frames, recordedFrames);
    CineFile cine;
    EXPECT_EQ(cine.Open(path), L"");
    EXPECT_EQ(cine.Problem(), L"");
    EXPECT_EQ(cine.Frames(), recordedFrames);
}

TEST_F(RepairTest, KeepsTheWholeFramesAndCutsTheRestOff)
{
    const std::wstring path = WriteCine(0);
    const Repaired repaired = RepairRecording(path);
    EXPECT_EQ(repaired.problem, L"");
    EXPECT_EQ(repaired.frames, 2);
    const std::string bytes = ReadFile(path);
    EXPECT_EQ(bytes.size(), 76 + 2 * frameSize);
    EXPECT_EQ(bytes.substr(4, 4), std::string("\2\0\0\0", 4));
    EXPECT_EQ(bytes.substr(76), std::string(frameSize, 'a') + std::string(frameSize, 'b'));
    EXPECT_EQ(RepairRecording(path).frames, 0) << "there is nothing more to do";
    EXPECT_EQ(ReadFile(path), bytes);
}

TEST_F(RepairTest, LeavesAWholeMovieAlone)
{
    RecordAndKill(L"Uncompressed");
    const std::wstring movie = m_folder / L"movie-001.avi";
    RepairRecording(movie);
    const std::string whole = ReadFile(movie);
    EXPECT_EQ(RepairRecording(movie).frames, 0);
    EXPECT_EQ(ReadFile(movie), whole);
}

TEST_F(RepairTest, TellsNothingOfMoviesThatWereFinishedOrNotBegun)
{
    RecordAndKill(L"Uncompressed");
    const std::wstring movie = m_folder / L"movie-001.avi";
    const MovieNote note = ReadNote(movie).value_or(MovieNote());
    RepairRecording(movie);
    WriteNote(movie, note);
    WriteFile(m_folder / L"movie-002.avi", std::string(4096, '\0'));
    WriteNote(m_folder / L"movie-002.avi", note);
    EXPECT_TRUE(RepairFolder(m_folder.Path()).empty());
    EXPECT_FALSE(ReadNote(movie));
}

TEST_F(RepairTest, LeavesARecordingAloneThatIsStillWritten)
{
    const std::wstring path = WriteCine(0);
    const std::string before = ReadFile(path);
    const base::File writer(CreateFileW(path.c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                        0, nullptr));
    EXPECT_TRUE(RepairFolder(m_folder.Path()).empty());
    EXPECT_EQ(RepairRecording(path).problem, L"another program is writing it");
    EXPECT_EQ(ReadFile(path), before);
}

TEST_F(RepairTest, SaysWhatCannotBeRepairedAndKeepsIt)
{
    EXPECT_EQ(RepairRecording(m_folder / L"missing.avi").problem, L"there is no such file");
    const std::pair<const wchar_t*, std::string> files[] = {
        {L"empty.avi", ""},
        {L"text.avi", "no movie at all"},
        {L"zeros.avi", std::string(5000, '\0')},
        {L"short.cine", "short"},
        {L"zeros.cine", std::string(500, '\0')}};
    for (const auto& [name, bytes] : files) {
        WriteFile(m_folder / name, bytes);
        EXPECT_NE(RepairRecording(m_folder / name).problem, L"");
        EXPECT_EQ(ReadFile(m_folder / name), bytes);
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.Path()), {}), 5);
}

TEST_F(RepairTest, MakesACutMovieWholeOrLeavesItAsItIs)
{
    RecordAndKill(L"Uncompressed");
    const std::wstring movie = m_folder / L"movie-001.avi";
    RepairRecording(movie);
    const std::string whole = ReadFile(movie);
    for (std::size_t size = whole.size() - 1; size > 0; size -= size / 7 + 1) {
        WriteFile(movie, whole.substr(0, size));
        const Repaired repaired = RepairRecording(movie);
        if (repaired.problem.empty())
            EXPECT_EQ(FindMovieProblem(movie, repaired.frames), L"") << size;
        else
            EXPECT_EQ(ReadFile(movie), whole.substr(0, size)) << size;
    }
}
