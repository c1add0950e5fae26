// Reading sound archives: what is extracted where, and the results.
#include "ZipExtractFixture.h"

#include <base/Handles.h>
#include <test_support/ResourceCounts.h>
#include <Utils_Statics/ZipCompress.h>

#include <type_traits>

namespace {

static_assert(std::is_copy_constructible_v<ZipExtract> && std::is_copy_assignable_v<ZipExtract>);
static_assert(std::has_virtual_destructor_v<ZipExtract>);
static_assert(sizeof(ZipExtract) == 2 * sizeof(void*) + 32768, "the buffer is in the object");

std::string LongContent()
{
    std::string content;
    for (int i = 0; i < 30000; ++i)
        content += std::to_string(i * 7919);
    return content;
}

TEST_F(ZipReading, ExtractsOneEntryAfterTheOther)
{
    Open({Stored("a.txt", "first"), Deflated("b.txt", LongContent()), Stored("c.txt", "third")});
    LogCapture log;
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Below(Target()), Names{"a.txt"});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_FALSE(m_zip.ExtractNext(nullptr)) << "no entry follows the last";
    EXPECT_EQ(Content(L"a.txt"), "first");
    EXPECT_EQ(Content(L"b.txt"), LongContent());
    EXPECT_EQ(Content(L"c.txt"), "third") << "it is extracted all the same";
    EXPECT_TRUE(log.Take().empty()) << "and that is no error";
}

TEST_F(ZipReading, StaysAtTheLastEntry)
{
    Open({Stored("a.txt", "first"), Stored("b.txt", "last")});
    m_zip.ExtractNext(nullptr);
    m_zip.ExtractNext(nullptr);
    DeleteFileW(L"b.txt");
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"b.txt"), "last");
}

TEST_F(ZipReading, MakesTheFolderThatAnEntryNeeds)
{
    Open({Stored("sub/x.bin", "x"), Stored("sub\\y.bin", "y"), Stored("z", "z")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Below(Target()), (Names{"sub", "sub/x.bin", "sub/y.bin"}));
}

TEST_F(ZipReading, MakesFoldersOfAnyDepthWithEitherSlash)
{
    Open({Stored("a/b/c/d/e.txt", "1"), Stored("f\\g\\h\\i.txt", "2"), Stored("a/b\\j/k.txt", "3"),
          Stored("z", "")});
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"a\\b\\c\\d\\e.txt"), "1");
    EXPECT_EQ(Content(L"f\\g\\h\\i.txt"), "2");
    EXPECT_EQ(Content(L"a\\b\\j\\k.txt"), "3");
}

TEST_F(ZipReading, AFolderEntryCreatesTheFolderAndIsSeenAgain)
{
    Open({Stored("sub/", ""), Stored("after.txt", "")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Below(Target()), Names{"sub"});
    EXPECT_FALSE(m_zip.ExtractNext(nullptr)) << "the folder is there already";
    EXPECT_TRUE(RemoveDirectoryW(L"sub"));
    EXPECT_TRUE(m_zip.ExtractNext(nullptr)) << "still the same entry";
    EXPECT_EQ(Below(Target()), Names{"sub"});
}

TEST_F(ZipReading, AFolderEntryMayBeDeepAndEndInEitherSlash)
{
    Open({Stored("a/b/c/", "")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    Open({Stored("d\\e\\", "")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Below(Target()), (Names{"a", "a/b", "a/b/c", "d", "d/e"}));
}

TEST_F(ZipReading, ExtractsEmptyFiles)
{
    Open({Stored("a", ""), Deflated("b", ""), Stored("c", "")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"a") + Content(L"b"), "");
}

TEST_F(ZipReading, ExtractsEntriesWithTheirSizesBehindTheData)
{
    Open({WithDescriptor(Deflated("a", LongContent())), WithDescriptor(Stored("b", "stored")),
          Stored("c", "")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"a"), LongContent());
    EXPECT_EQ(Content(L"b"), "stored");
}

TEST_F(ZipReading, ExtractsWideArchives)
{
    Entry wide = Deflated("a", LongContent());
    wide.wide = true;
    Open(raw_archive::Write({wide, Stored("b", "b"), Stored("c", "")}, true));
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"a"), LongContent());
    EXPECT_EQ(Content(L"b"), "b");
}

TEST_F(ZipReading, ExtractsThousandsOfEntries)
{
    const std::vector<Entry> entries(2000, Stored("again", "and again"));
    Open(entries);
    int extracted = 0;
    while (m_zip.ExtractNext(nullptr))
        ++extracted;
    EXPECT_EQ(extracted, 1999);
}

// The zip library takes this number for one that exceeded 16 bits, and looks for more.
TEST_F(ZipReading, ExtractsAsManyEntriesAsAnArchiveCanHave)
{
    std::vector<Entry> entries(65535, Stored("?", "")); // no file can have that name
    entries.back() = Stored("last", "content");
    Open(entries);
    LogCapture log;
    int extracted = 0;
    while (extracted < 65535 && m_zip.ExtractNext(nullptr))
        ++extracted;
    EXPECT_EQ(extracted, 65534);
    EXPECT_EQ(Content(L"last"), "content");
    EXPECT_TRUE(log.Take().empty());
    DeleteFileW(L"last");
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"last"), "content") << "it stays at the last entry";
}

TEST_F(ZipReading, ADirectoryDamagedAtThatNumberIsAnError)
{
    std::string archive = raw_archive::Write({Stored("a", "1"), Stored("b", "2")});
    archive.replace(archive.size() - 14, 4, 4, '\xFF');
    Open(archive);
    LogCapture log;
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    ExpectLogged(log, L"error -103 with zipfile in unzGoToNextFile\n");
}

TEST_F(ZipReading, WritesOverFilesThatAreThere)
{
    test_support::WriteFile(Target() + L"\\a", "something longer");
    Open({Stored("a", "new"), Stored("b", "")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"a"), "new");
}

TEST_F(ZipReading, SkipsWhatCannotBeCreatedAndCountsItAsSuccess)
{
    test_support::WriteFile(Target() + L"\\locked", "old");
    base::File locked(CreateFileW(L"locked", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    CreateDirectoryW(L"folder", nullptr);
    Open({Stored("locked", "new"), Stored("folder", "new"), Stored("locked/below", "new"),
          Stored("next", "next"), Stored("last", "")});
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(m_zip.ExtractNext(nullptr)) << i;
    locked.reset();
    EXPECT_EQ(Content(L"locked"), "old");
    EXPECT_EQ(Below(Target()), (Names{"folder", "locked", "next"}));
}

TEST_F(ZipReading, APasswordDoesNoHarmToPlainEntries)
{
    Open({Deflated("a", LongContent()), Stored("b", "")});
    EXPECT_TRUE(m_zip.ExtractNext("secret"));
    EXPECT_EQ(Content(L"a"), LongContent());
}

TEST_F(ZipReading, AnArchiveOfOursComesBack)
{
    test_support::WriteFile(m_folder / L"study.xml", LongContent());
    {
        ZipCompress zip;
        zip.SetBasePath(m_folder.Path()); // no separator, because the names begin with one
        ASSERT_TRUE(zip.Create(Archive().c_str()));
        ASSERT_TRUE(zip.AddFile((m_folder / L"study.xml").c_str()));
        ASSERT_TRUE(zip.AddFile((m_folder / L"study.xml").c_str()));
    }
    ASSERT_TRUE(m_zip.Open(Archive().c_str()));
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Content(L"study.xml"), LongContent());
}

TEST_F(ZipReading, DoesNothingWithoutAnArchive)
{
    LogCapture log;
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    m_zip.Close();
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(ZipReading, OpensArchivesOnly)
{
    EXPECT_FALSE(m_zip.Open(nullptr));
    EXPECT_FALSE(m_zip.Open(L""));
    EXPECT_FALSE(m_zip.Open((m_folder / L"missing.zip").c_str()));
    EXPECT_FALSE(m_zip.Open(m_folder.Path().c_str()));
    for (const std::size_t size : {0, 1, 4, 21, 22, 1000, 70'000}) {
        test_support::WriteFile(Archive(), std::string(size, 'P'));
        EXPECT_FALSE(m_zip.Open(Archive().c_str())) << size;
    }
}

TEST_F(ZipReading, AFailedOpenClosesTheArchiveBefore)
{
    Open({Stored("a", "a"), Stored("b", "")});
    EXPECT_FALSE(m_zip.Open(nullptr));
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    EXPECT_TRUE(Below(Target()).empty());
}

// The zip library does not find an archive's end at the very beginning of a file. So an archive
// without entries can be opened only behind something else.
TEST_F(ZipReading, AnEmptyArchiveHasNoEntryToTellOf)
{
    test_support::WriteFile(Archive(), raw_archive::Write({}));
    EXPECT_FALSE(m_zip.Open(Archive().c_str()));
    Open("a stub" + raw_archive::Write({}));
    LogCapture log;
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    ExpectLogged(log, L"error -103 with zipfile in unzGetCurrentFileInfo\n");
}

TEST_F(ZipReading, TheEndOfTheObjectClosesTheArchive)
{
    test_support::WriteFile(Archive(), raw_archive::Write({Stored("a", "a"), Stored("b", "")}));
    const DWORD before = test_support::HandleCount();
    {
        ZipExtract zip;
        ASSERT_TRUE(zip.Open(Archive().c_str()));
        EXPECT_TRUE(zip.ExtractNext(nullptr));
    }
    EXPECT_EQ(test_support::HandleCount(), before);
}

} // namespace
