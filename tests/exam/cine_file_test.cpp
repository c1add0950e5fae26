#include "image/CineFile.h"

#include "test_support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

using exam::CineFile;
using test_support::TemporaryFolder;

namespace {

constexpr int lines = 3;
constexpr int samples = 5;

// The 19 words of a header of `count` frames of 3 lines x 5 samples from a curved probe.
std::vector<std::int32_t> HeaderWords(int count)
{
    return {uDataBMode, count, lines, samples, 8,    15000000, 1540, 0, 188, 292,
            26400,      0,     30000, 1000,    2000, 1,        241,  0, 0};
}

class CineFileTest : public testing::Test
{
protected:
    // Writes a file of these words followed by `payload` counting bytes, and reads it.
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

    TemporaryFolder m_folder;
    std::wstring m_path = m_folder / L"test.cine";
    CineFile m_cine;
};

} // namespace

TEST_F(CineFileTest, ReadsTheHeaderAndEveryFrame)
{
    ASSERT_EQ(Read(HeaderWords(2), 30), L"");
    EXPECT_EQ(m_cine.Frames(), 2);
    EXPECT_TRUE(m_cine.IsComplete());
    EXPECT_EQ(m_cine.Lines(), lines);
    EXPECT_EQ(m_cine.Samples(), samples);
    EXPECT_EQ(m_cine.Description().stream.samplingFreq, 15000000);
    EXPECT_EQ(m_cine.Description().stream.frameRate, 30000);
    EXPECT_EQ(m_cine.Probe().radius, 26400);
    EXPECT_EQ(m_cine.Description().steerAngle, 1000);
    EXPECT_EQ(m_cine.Description().apexAngle, 2000);
    EXPECT_EQ(m_cine.Description().lineOffset, 1);
    EXPECT_EQ(m_cine.Description().apertureLines, 241);
    ASSERT_EQ(m_cine.Frame(1).size(), 15u);
    EXPECT_EQ(m_cine.Frame(1)[0], 15);
    EXPECT_EQ(m_cine.Frame(1)[14], 29);
}

TEST_F(CineFileTest, HasNoFrameOutsideItsCount)
{
    ASSERT_EQ(Read(HeaderWords(2), 30), L"");
    EXPECT_TRUE(m_cine.Frame(-1).empty());
    EXPECT_TRUE(m_cine.Frame(2).empty());
}

TEST_F(CineFileTest, CountsTheFramesOfARecordingThatWasCutOff)
{
    ASSERT_EQ(Read(HeaderWords(0), 37), L"");
    EXPECT_EQ(m_cine.Frames(), 2);
    EXPECT_FALSE(m_cine.IsComplete());
}

TEST_F(CineFileTest, BelievesTheSizeWhenTheCountPromisesMore)
{
    ASSERT_EQ(Read(HeaderWords(2000000000), 30), L"");
    EXPECT_EQ(m_cine.Frames(), 2);
    EXPECT_FALSE(m_cine.IsComplete());
}

TEST_F(CineFileTest, TellsWhatIsWrongWithAFile)
{
    EXPECT_EQ(m_cine.Open(m_folder / L"missing.cine"), L"there is no such file");
    EXPECT_NE(Read({1, 2, 3}, 0), L"");
    EXPECT_NE(Read(HeaderWords(1), 14), L"") << "not one whole frame";
    EXPECT_NE(m_cine.Open(m_folder.Path()), L"") << "a folder";
}

TEST_F(CineFileTest, RefusesHeadersThatNoRecordingHas)
{
    const struct
    {
        std::size_t word;
        std::int32_t value;
    } broken[] = {{0, 3},       {1, -1}, {2, 0}, {2, -5}, {2, 1 << 30}, {3, 1},
                  {3, 1 << 30}, {4, 16}, {5, 0}, {5, -1}, {6, 0}};
    for (const auto& [word, value] : broken) {
        auto words = HeaderWords(1);
        words[word] = value;
        EXPECT_NE(Read(words, 15), L"") << "word " << word << " = " << value;
    }
}

TEST_F(CineFileTest, SurvivesRandomBytes)
{
    std::mt19937 random(20);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::int32_t> words(random() % 40);
        for (auto& word : words)
            word = random() % 3 == 0 ? static_cast<std::int32_t>(random())
                                     : static_cast<std::int32_t>(random() % 64);
        if (!Read(words, random() % 300).empty()) continue;
        for (int frame = 0; frame < m_cine.Frames(); ++frame)
            EXPECT_EQ(m_cine.Frame(frame).size(), static_cast<std::size_t>(m_cine.Lines()) *
                                                      static_cast<std::size_t>(m_cine.Samples()));
    }
}
