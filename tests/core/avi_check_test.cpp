#include "record/MovieFile.h"
#include "test_support/Files.h"
#include "test_support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

constexpr int frameCount = 5;

std::string Word(std::uint32_t value)
{
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

std::string Chunk(const std::string& name, const std::string& data)
{
    return name + Word(static_cast<std::uint32_t>(data.size())) + data +
           std::string(data.size() % 2, '\0');
}

std::string List(const std::string& type, const std::string& data)
{
    return Chunk("LIST", type + data);
}

// The parts of a movie of five frames; a test changes some of them.
struct Parts
{
    std::uint32_t total = frameCount;  // value in the main header
    std::uint32_t length = frameCount; // value in the stream's header
    std::string frames;
    std::string index;

    Parts()
    {
        for (std::uint32_t i = 0; i < frameCount; ++i) {
            const std::string frame = Chunk("00dc", std::string(7 + i, 'f'));
            index += "00dc" + Word(16) + Word(static_cast<std::uint32_t>(4 + frames.size())) +
                     Word(7 + i);
            frames += frame;
        }
    }

    std::string Headers() const
    {
        return List("hdrl",
                    Chunk("avih", std::string(16, '\0') + Word(total) + std::string(36, '\0')) +
                        List("strl", Chunk("strh", std::string(32, '\0') + Word(length) +
                                                       std::string(20, '\0'))));
    }

    std::string Movie() const
    {
        return Chunk("RIFF", "AVI " + Headers() + Chunk("JUNK", std::string(9, '\0')) +
                                 List("movi", frames) + Chunk("idx1", index));
    }
};

// The problem that is found in a file of these bytes.
std::wstring Problem(const std::string& bytes, int frames = frameCount)
{
    const test_support::TemporaryFolder folder;
    test_support::WriteFile(folder / L"test.avi", bytes);
    return exam::FindMovieProblem(folder / L"test.avi", frames);
}

} // namespace

TEST(AviCheck, FindsNothingInAWholeMovie)
{
    EXPECT_EQ(Problem(Parts().Movie()), L"");
    EXPECT_EQ(Problem(Parts().Movie() + std::string(20, '\0')), L"") << "more behind its end";
    EXPECT_EQ(Problem(Parts().Movie(), frameCount - 1), L"") << "frames may be repeated";
}

TEST(AviCheck, MissesFramesThatWereWritten)
{
    EXPECT_EQ(Problem(Parts().Movie(), 7), L"it holds 5 of 7 frames");
}

TEST(AviCheck, FindsEveryTruncation)
{
    const std::string movie = Parts().Movie();
    for (std::size_t size = 0; size < movie.size(); ++size)
        EXPECT_NE(Problem(movie.substr(0, size)), L"") << size << " of " << movie.size();
}

TEST(AviCheck, FindsAMissingIndex)
{
    const Parts parts;
    EXPECT_EQ(Problem(Chunk("RIFF", "AVI " + parts.Headers() + List("movi", parts.frames))),
              L"it has no index");
}

TEST(AviCheck, FindsCountsThatDiffer)
{
    Parts parts;
    parts.total = 4;
    EXPECT_EQ(Problem(parts.Movie()), L"its counts of frames differ");
    parts.total = frameCount;
    parts.length = 6;
    EXPECT_EQ(Problem(parts.Movie()), L"its counts of frames differ");
}

TEST(AviCheck, FollowsTheIndexToEveryFrame)
{
    for (std::size_t entry = 0; entry < frameCount; ++entry) {
        Parts moved;
        ++moved.index[16 * entry + 8];
        EXPECT_EQ(Problem(moved.Movie()), L"its index does not lead to its frames");
        Parts resized;
        ++resized.index[16 * entry + 12];
        EXPECT_EQ(Problem(resized.Movie()), L"its index does not lead to its frames");
        Parts renamed;
        renamed.index[16 * entry] = 'x';
        EXPECT_EQ(Problem(renamed.Movie()), L"its index does not lead to its frames");
    }
}

TEST(AviCheck, SaysThatThereIsNoFile)
{
    EXPECT_EQ(exam::FindMovieProblem(L"C:\\no\\such.avi", 1), L"it cannot be read again");
}

TEST(AviCheck, FindsEveryDamagedName)
{
    const std::string movie = Parts().Movie();
    int names = 0;
    for (const char* const name :
         {"RIFF", "AVI ", "LIST", "hdrl", "avih", "strl", "strh", "movi", "00dc", "idx1"})
        for (auto at = movie.find(name); at != std::string::npos; at = movie.find(name, at + 1)) {
            std::string damaged = movie;
            damaged[at + 3] = '?';
            EXPECT_NE(Problem(damaged), L"") << name << " at " << at;
            ++names;
        }
    EXPECT_EQ(names, 9 + 2 + 2 * frameCount); // three lists, and each frame twice
}
