#include "image/CineFile.h"
#include "test_support/TemporaryFolder.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <qor_utils/ZelProbe.h>

#include <windows.h>
#include <psapi.h>
#include <winioctl.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

using namespace exam;
using test_support::TemporaryFolder;

namespace {

constexpr int lines = 3;
constexpr int samples = 5;

// The 19 words of a header of `count` frames of 3 lines x 5 samples from a curved probe.
std::vector<std::int32_t> HeaderWords(int count)
{
    return {uDataBMode, count, lines, samples, 8,    15000000, 1540, 0, 188, 292,
            26400,      0,     30000, 1000,    2000, 0,        3,    0, 0};
}

class CineFileTest : public testing::Test
{
protected:
    // Writes a file of these words and `payload` bytes that count up, and reads it.
    std::wstring Read(const std::vector<std::int32_t>& words, std::size_t payload)
    {
        std::ofstream file(std::filesystem::path(m_path), std::ios::binary);
        file.write(reinterpret_cast<const char*>(words.data()),
                   static_cast<std::streamsize>(words.size() * 4));
        for (std::size_t i = 0; i < payload; ++i)
            file.put(static_cast<char>(i));
        file.close();
        return m_cine.Open(m_path);
    }

    // The bytes of a frame; none when it cannot be read.
    std::vector<std::uint8_t> Frame(int frame) const
    {
        std::vector<std::uint8_t> bytes;
        if (!m_cine.ReadFrame(frame, bytes)) bytes.clear();
        return bytes;
    }

    TemporaryFolder m_folder;
    std::wstring m_path = m_folder / L"test.cine";
    CineFile m_cine;
};

} // namespace

TEST_F(CineFileTest, ReadsTheHeaderAndEveryFrame)
{
    ASSERT_EQ(Read(HeaderWords(2), 30), L"");
    EXPECT_EQ(m_cine.Frames(), 2);
    EXPECT_EQ(m_cine.Problem(), L"");
    EXPECT_EQ(m_cine.Lines(), lines);
    EXPECT_EQ(m_cine.Samples(), samples);
    EXPECT_EQ(m_cine.Description().stream.samplingFreq, 15000000);
    EXPECT_EQ(m_cine.Description().stream.frameRate, 30000);
    EXPECT_EQ(m_cine.Description().stream.radius, 26400);
    EXPECT_EQ(m_cine.Description().steerAngle, 1000);
    EXPECT_EQ(m_cine.Description().apexAngle, 2000);
    EXPECT_EQ(m_cine.Description().lineOffset, 0);
    EXPECT_EQ(m_cine.Description().apertureLines, lines);
    const std::vector<std::uint8_t> frame = Frame(1);
    ASSERT_EQ(frame.size(), 15u);
    EXPECT_EQ(frame[0], 15);
    EXPECT_EQ(frame[14], 29);
}

TEST_F(CineFileTest, HasNoFrameOutsideItsCount)
{
    ASSERT_EQ(Read(HeaderWords(2), 30), L"");
    EXPECT_TRUE(Frame(-1).empty());
    EXPECT_TRUE(Frame(2).empty());
}

TEST_F(CineFileTest, CountsTheFramesOfARecordingThatWasCutOff)
{
    ASSERT_EQ(Read(HeaderWords(0), 37), L"");
    EXPECT_EQ(m_cine.Frames(), 2);
    EXPECT_NE(m_cine.Problem(), L"");
}

TEST_F(CineFileTest, BelievesTheSizeWhenTheCountPromisesMore)
{
    ASSERT_EQ(Read(HeaderWords(2000000000), 30), L"");
    EXPECT_EQ(m_cine.Frames(), 2);
    EXPECT_NE(m_cine.Problem(), L"");
}

TEST_F(CineFileTest, TellsWhatIsWrongWithAFile)
{
    EXPECT_EQ(m_cine.Open(m_folder / L"missing.cine"), L"there is no such file");
    EXPECT_NE(Read({1, 2, 3}, 0), L"");
    EXPECT_NE(Read(HeaderWords(1), 14), L"") << "not one whole frame";
    EXPECT_EQ(m_cine.Open(m_folder.Path()), L"this is a folder, not a file");
    EXPECT_EQ(m_cine.Open(L"NUL"), L"this is a device, not a file");
}

TEST_F(CineFileTest, RefusesHeadersThatNoRecordingHas)
{
    const struct
    {
        std::size_t word;
        std::int32_t value;
    } broken[] = {
        {0, 3},           {1, -1},         {2, 0},           {2, -5},
        {2, 1 << 30},     {3, 1},          {3, 1 << 30},     {4, 16},
        {5, 0},           {5, -1},         {5, 1},           {6, 0},
        {6, 2147483647},  {7, 3},          {7, -1},          {8, 0},
        {8, -1},          {8, 2147483647}, {9, 0},           {9, -1},
        {9, 2147483647},  {10, 0},         {10, 2147483647}, {10, -2147483647 - 1},
        {12, 2147483647}, {12, -1},        {15, 1},          {16, 4},
        {16, 0},
    };
    for (const auto& [word, value] : broken) {
        auto words = HeaderWords(1);
        words[word] = value;
        EXPECT_NE(Read(words, 15), L"") << "word " << word << " = " << value;
    }
}

TEST_F(CineFileTest, RefusesASectorWithoutAnAngle)
{
    auto words = HeaderWords(1);
    words[7] = qor_utils::phasedProbe;
    words[11] = 90000;
    words[14] = 0; // no virtual apex
    EXPECT_EQ(Read(words, 15), L"");
    for (const int sector : {0, -90000, 500000}) {
        words[11] = sector;
        EXPECT_NE(Read(words, 15), L"") << sector;
    }
}

TEST_F(CineFileTest, RefusesLinesThatAreSteeredAlongTheFace)
{
    auto words = HeaderWords(1);
    words[7] = qor_utils::linearProbe;
    EXPECT_EQ(Read(words, 15), L"");
    words[13] = 90000;
    EXPECT_NE(Read(words, 15), L"");
}

TEST_F(CineFileTest, SurvivesRandomHeaders)
{
    std::mt19937 random(20);
    int read = 0;
    for (int round = 0; round < 400; ++round) {
        std::vector<std::int32_t> words = HeaderWords(2);
        if (round % 4 == 0) words.resize(random() % 40);
        for (auto& word : words) {
            if (random() % 8 != 0) continue;
            word = static_cast<std::int32_t>(random() % 3 == 0 ? random() : random() % 64);
        }
        if (!Read(words, random() % 300).empty()) continue;
        ++read;
        for (int frame = 0; frame < m_cine.Frames(); ++frame)
            EXPECT_EQ(Frame(frame).size(), static_cast<std::size_t>(m_cine.Lines()) *
                                               static_cast<std::size_t>(m_cine.Samples()));
    }
    EXPECT_GT(read, 10);
}

TEST_F(CineFileTest, CannotReadAFrameThatWasTakenAwayMeanwhile)
{
    ASSERT_EQ(Read(HeaderWords(2), 30), L"");
    std::filesystem::resize_file(m_path, 76 + 20);
    EXPECT_EQ(Frame(0).size(), 15u);
    EXPECT_TRUE(Frame(1).empty());
}

namespace {

// The process's private memory in bytes.
std::size_t PrivateBytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

// Writes a recording of `frames` frames of 4096 lines x 1024 samples. Only the first byte of the
// last frame is not zero, so the file takes no space where the file system has sparse files.
void WriteSparseCine(const std::wstring& path, int frames)
{
    std::vector<std::int32_t> words = HeaderWords(frames);
    words[2] = 4096;
    words[3] = 1024;
    words[16] = 4096;
    const base::File file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD bytes = 0;
    DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &bytes, nullptr);
    WriteFile(file.get(), words.data(), 76, &bytes, nullptr);
    LARGE_INTEGER place{};
    place.QuadPart = 76 + std::int64_t{4096} * 1024 * (frames - 1);
    SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN);
    WriteFile(file.get(), "\7", 1, &bytes, nullptr);
    place.QuadPart = 76 + std::int64_t{4096} * 1024 * frames;
    SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN);
    ASSERT_TRUE(SetEndOfFile(file.get()));
}

} // namespace

TEST_F(CineFileTest, TakesNoMoreMemoryForALongRecordingThanForAShortOne)
{
    constexpr int frames = 800; // 3.1 GiB, beyond 32-bit offsets and the memory of a 32-bit process
    WriteSparseCine(m_path, frames);
    const std::size_t before = PrivateBytes();
    {
        const std::vector<std::uint8_t> held(std::size_t{64} << 20, 1);
        if (PrivateBytes() < before + held.size()) GTEST_SKIP() << "memory is not counted here";
    }
    ASSERT_EQ(m_cine.Open(m_path), L"");
    EXPECT_EQ(m_cine.Frames(), frames);
    EXPECT_EQ(m_cine.Problem(), L"");
    const std::vector<std::uint8_t> last = Frame(frames - 1);
    ASSERT_EQ(last.size(), std::size_t{4096} * 1024);
    EXPECT_EQ(last[0], 7);
    EXPECT_EQ(Frame(frames - 2)[0], 0);
    EXPECT_LT(PrivateBytes(), before + 2 * last.size());
}
