#include "test_support/Files.h"

#include "test_support/TemporaryFolder.h"

#include <base/FileContents.h>
#include <base/Folders.h>
#include <base/InFolder.h>
#include <gtest/gtest.h>

using test_support::FileExists;
using test_support::TemporaryFolder;
using test_support::WriteFile;

TEST(ReadFileWhole, GivesEveryByteOfAFileUpToTheLimit)
{
    const TemporaryFolder folder;
    const std::string bytes("a\0\r\n\x1A\xFF", 6);
    WriteFile(folder / L"file", bytes);
    WriteFile(folder / L"empty", "");
    EXPECT_EQ(base::ReadFileWhole((folder / L"file").c_str(), 7), bytes);
    EXPECT_EQ(base::ReadFileWhole((folder / L"file").c_str(), 6), bytes);
    EXPECT_EQ(base::ReadFileWhole((folder / L"file").c_str(), 5), std::nullopt);
    EXPECT_EQ(base::ReadFileWhole((folder / L"empty").c_str(), 0), "");
}

TEST(ReadFileWhole, GivesNothingOfWhatIsNoFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(base::ReadFileWhole((folder / L"none").c_str(), 9), std::nullopt);
    EXPECT_EQ(base::ReadFileWhole(folder.Path().c_str(), 9), std::nullopt);
    EXPECT_EQ(base::ReadFileWhole(L"", 9), std::nullopt);
}

TEST(ReadFileWhole, ReadsBesideAWriterUnlessItsSharingForbidsOne)
{
    const TemporaryFolder folder;
    WriteFile(folder / L"file", "x");
    const base::File writer(CreateFileW((folder / L"file").c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(base::ReadFileWhole((folder / L"file").c_str(), 9), "x");
    EXPECT_EQ(base::ReadFileWhole((folder / L"file").c_str(), 9, FILE_SHARE_READ), std::nullopt);
}

TEST(MakeFolders, MakesWhatIsMissingAndTellsWhetherTheLastWas)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(base::MakeFolders(folder / L"a\\b\\c"));
    EXPECT_FALSE(base::MakeFolders(folder / L"a\\b\\c"));
    EXPECT_FALSE(base::MakeFolders(folder / L"d\\e\\")) << "the backslash made it";
    EXPECT_TRUE(FileExists(folder / L"d\\e"));
}

TEST(MakeFolders, LeavesAloneWhatEndsBeforeTheFirst)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(base::MakeFolders(folder / L"a\\b", (folder / L"a\\").size()));
    EXPECT_FALSE(FileExists(folder / L"a"));
}

TEST(InFolder, BringsBackTheFolderBeforeWhateverBecameTheCurrentOne)
{
    const TemporaryFolder folder;
    const std::wstring before = base::CurrentFolder();
    {
        const base::InFolder inside(folder.Path());
        EXPECT_TRUE(inside);
        EXPECT_EQ(base::CurrentFolder(), folder.Path());
        SetCurrentDirectoryW(L"C:\\");
        EXPECT_EQ(base::CurrentFolder(), L"C:\\");
    }
    EXPECT_EQ(base::CurrentFolder(), before);
}

TEST(InFolder, TellsThatAFolderCannotBeEntered)
{
    const TemporaryFolder folder;
    const std::wstring before = base::CurrentFolder();
    EXPECT_FALSE(base::InFolder(folder / L"none"));
    EXPECT_EQ(base::CurrentFolder(), before);
}
