// The logger's file: its content, when it is opened and renamed, its folder, and the failures it
// survives.
#include "LogFolder.h"

#include <base/Handles.h>
#include <base/InFolder.h>
#include <gtest/gtest.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/zelPath.h>
#include <test_support/Files.h>

#include <windows.h>

#include <thread>

namespace {

using test_support::FileExists;
using test_support::LogCapture;
using test_support::ReadFile;
using test_support::TemporaryFolder;

TEST(LogFile, HoldsEachMessageWhenTheCallReturns)
{
    const LogFolder folder;
    zelLogger::zelLogHelper("Utils_Statics/ActionRepository", 32,
                            1)(L"Could not load actions from file");
    const std::string file = ReadFile(folder.File());
    EXPECT_NE(
        file.find(
            "[error] Utils_Statics/ActionRepository(32): Could not load actions from file\r\n"),
        std::string::npos)
        << file;
}

TEST(LogFile, NamesTheLevels)
{
    const LogFolder folder;
    for (const int level : {1, 2, 3, 4, 8, 0, -1})
        zelLogger::zelLogHelper("s", level, level)(L"x");
    const std::string file = ReadFile(folder.File());
    EXPECT_EQ(Count(file, "[error] s(1)"), 1u);
    EXPECT_EQ(Count(file, "[warning] s(2)"), 1u);
    EXPECT_EQ(Count(file, "[info] s(3)"), 1u);
    EXPECT_EQ(Count(file, "[info] s(4)"), 1u);
    EXPECT_EQ(Count(file, "[debug] s("), 3u) << file;
}

TEST(LogFile, IsUtf8)
{
    const LogFolder folder;
    Log(L"\x00E4\x4E2D\xD83D\xDE00 {} %%n");
    EXPECT_NE(ReadFile(folder.File()).find("\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80 {} %n"),
              std::string::npos);
}

TEST(LogFile, IsOpenedByTheFirstMessageOnly)
{
    const LogFolder folder;
    EXPECT_FALSE(FileExists(folder.File()));
    Log(L"x");
    EXPECT_TRUE(FileExists(folder.File()));
}

TEST(LogFile, IsAppendedTo)
{
    const LogFolder folder;
    Log(L"first");
    {
        const LogFolder other;
        Log(L"elsewhere");
    }
    qor_utils::SetLogDirectory(folder.Path());
    Log(L"second");
    const std::string file = ReadFile(folder.File());
    EXPECT_NE(file.find("first"), std::string::npos);
    EXPECT_NE(file.find("second"), std::string::npos);
    EXPECT_EQ(file.find("elsewhere"), std::string::npos);
}

TEST(LogFile, IsRenamedWhenItIsFullAndNothingIsLost)
{
    const LogFolder folder;
    const std::wstring text(60'000, L'x');
    for (int i = 0; i < 100; ++i)
        Log(L"<%d>%s", i, text.c_str());
    ASSERT_TRUE(FileExists(folder.File(L".1.log")));
    EXPECT_FALSE(FileExists(folder.File(L".2.log")));
    const std::string old = ReadFile(folder.File(L".1.log"));
    const std::string now = ReadFile(folder.File());
    EXPECT_LE(old.size(), 5u * 1024 * 1024);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(Count(old + now, "<" + std::to_string(i) + ">x"), 1u) << i;
}

TEST(LogFile, HoldsEveryMessageOfManyThreadsOnALineOfItsOwn)
{
    const LogFolder folder;
    const LogCapture capture;
    constexpr int perThread = 300;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 6; ++t) {
            threads.emplace_back([t] {
                for (int i = 0; i < perThread; ++i)
                    Log(L"<%d/%d>", t, i);
            });
        }
    }
    const std::string file = ReadFile(folder.File());
    EXPECT_EQ(capture.Messages().size(), 6u * perThread);
    for (int t = 0; t < 6; ++t) {
        for (int i = 0; i < perThread; ++i)
            ASSERT_EQ(Count(file, ": <" + std::to_string(t) + "/" + std::to_string(i) + ">\r\n"),
                      1u);
    }
}

TEST(LogFile, IsNotMissedByTheCallerWhenTheFolderCannotBe)
{
    const TemporaryFolder base;
    test_support::WriteFile(base / L"file", "x");
    qor_utils::SetLogDirectory(base / L"file\\below");
    const LogCapture capture;
    for (int i = 0; i < 50; ++i)
        Log(L"message %d", i);
    EXPECT_EQ(capture.Messages().size(), 50u);
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"file\\below\\");
    const LogFolder good;
    Log(L"back");
    EXPECT_NE(ReadFile(good.File()).find("back"), std::string::npos);
}

TEST(LogFile, IsNotMissedByTheCallerWhenAnotherProgramHoldsIt)
{
    const LogFolder folder;
    const LogCapture capture;
    base::File held(
        CreateFileW(folder.File().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    ASSERT_TRUE(held);
    Log(L"held");
    held.reset();
    EXPECT_EQ(LastText(capture), L"held");
    qor_utils::SetLogDirectory(
        folder.Path()); // does not wait for the time after which the file is tried again
    Log(L"free");
    EXPECT_NE(ReadFile(folder.File()).find("free"), std::string::npos);
}

TEST(LogDirectory, EndsInABackslashHoweverItIsSet)
{
    const TemporaryFolder base;
    for (const std::wstring& directory : {base.Path(), base / L"", base.Path() + L"/"}) {
        qor_utils::SetLogDirectory(directory);
        EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"");
    }
    qor_utils::SetLogDirectory(L"");
}

TEST(LogDirectory, IsMadeWithItsParents)
{
    const TemporaryFolder base;
    qor_utils::SetLogDirectory(base / L"a\\\x4E2D\\c");
    EXPECT_FALSE(FileExists(base / L"a"));
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"a\\\x4E2D\\c\\");
    EXPECT_TRUE(FileExists(base / L"a\\\x4E2D\\c"));
    Log(L"x");
    EXPECT_TRUE(FileExists(base / L"a\\\x4E2D\\c\\qor_utils_logger_test.log"));
    qor_utils::SetLogDirectory(L"");
}

TEST(LogDirectory, StaysWhereItIsWhenTheCurrentFolderChanges)
{
    const TemporaryFolder base;
    {
        const base::InFolder inside(base.Path());
        qor_utils::SetLogDirectory(L"logs");
    }
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"logs\\");
    qor_utils::SetLogDirectory(L"");
}

TEST(LogDirectory, IsTheLogStoreUntilOneIsSet)
{
    const TemporaryFolder base;
    qor_utils::SetStoreFolder(28, base / L"store");
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"store\\");
    Log(L"x");
    EXPECT_TRUE(FileExists(base / L"store\\qor_utils_logger_test.log"));
    const LogFolder other; // closes the file, so that the folder can be deleted
    EXPECT_EQ(zelLogger::getCurrentDirectory(), other.Path() + L"\\");
    qor_utils::SetStoreFolder(28, L"");
}

} // namespace
