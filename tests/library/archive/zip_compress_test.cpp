// Writing archives: names, times and compression of the entries, and the effect of a failing step.
#include "RawArchive.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/LogCapture.h>
#include <test_support/ResourceCounts.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/ZipCompress.h>

#include <windows.h>

#include <type_traits>

namespace {

using raw_archive::Listed;
using test_support::LogCapture;
using test_support::LoggedMessage;
using test_support::ReadFile;
using test_support::TemporaryFolder;
using test_support::WriteFile;

static_assert(std::is_copy_constructible_v<ZipCompress> && std::is_copy_assignable_v<ZipCompress>);
static_assert(std::has_virtual_destructor_v<ZipCompress>);

// Reaches the protected member.
struct Times : ZipCompress
{
    using ZipCompress::FileTime;
};

class ZipWriting : public testing::Test
{
protected:
    ZipWriting()
    {
        CreateDirectoryW((m_folder / L"data").c_str(), nullptr);
        CreateDirectoryW((m_folder / L"data\\a").c_str(), nullptr);
        WriteFile(File(), "content");
    }

    std::wstring Archive() const { return m_folder / L"out.zip"; }
    std::wstring File() const { return m_folder / L"data\\a\\b.txt"; }

    // The entries of an archive with the one file, for a base folder.
    std::vector<Listed> EntriesFor(const std::wstring& base) const
    {
        ZipCompress zip;
        zip.SetBasePath(base);
        EXPECT_TRUE(zip.Create(Archive().c_str()));
        EXPECT_TRUE(zip.AddFile(File().c_str()));
        zip.Close();
        return raw_archive::List(ReadFile(Archive()));
    }

    std::string NameFor(const std::wstring& base) const
    {
        const std::vector<Listed> entries = EntriesFor(base);
        return entries.size() == 1 ? entries[0].name : "not one entry";
    }

    static std::string Narrow(const std::wstring& text)
    {
        return std::string(text.begin(), text.end());
    }

    const TemporaryFolder m_folder;
};

TEST_F(ZipWriting, TakesTheBaseFolderOffTheNameExactlyAsItStands)
{
    EXPECT_EQ(NameFor(m_folder / L"data"), "\\a\\b.txt");
    EXPECT_EQ(NameFor(m_folder / L"data\\"), "a\\b.txt");
    EXPECT_EQ(NameFor(m_folder / L"dat"), "a\\a\\b.txt") << "no separator is looked for";
}

TEST_F(ZipWriting, KeepsTheWholePathOutsideOfTheBaseFolder)
{
    EXPECT_EQ(NameFor(L""), Narrow(File()));
    EXPECT_EQ(NameFor(m_folder / L"other"), Narrow(File()));
    EXPECT_EQ(NameFor(m_folder / L"DATA"), Narrow(File())) << "the case counts";
    EXPECT_EQ(NameFor(L"data"), Narrow(File())) << "a prefix stands at the beginning";
}

TEST_F(ZipWriting, LeavesAnEmptyNameWhenTheBaseIsTheFile)
{
    EXPECT_EQ(NameFor(File()), "");
}

TEST_F(ZipWriting, ConvertsTheNameToTheAnsiCodePage)
{
    const std::wstring file = m_folder / L"data\\\u00E9t\u00E9.txt";
    WriteFile(file, "summer");
    char expected[16] = {};
    WideCharToMultiByte(CP_ACP, 0, L"\u00E9t\u00E9.txt", -1, expected, sizeof expected, nullptr,
                        nullptr);
    ZipCompress zip;
    zip.SetBasePath(m_folder / L"data\\");
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    EXPECT_TRUE(zip.AddFile(file.c_str()));
    zip.Close();
    const std::vector<Listed> entries = raw_archive::List(ReadFile(Archive()));
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].name, expected);
    EXPECT_EQ(entries[0].flags & 0x800, 0) << "nothing says that it is UTF-8";
}

TEST_F(ZipWriting, DeflatesAtTheHighestLevel)
{
    std::string content;
    for (int i = 0; i < 20000; ++i)
        content += std::to_string(i * i % 7919) + (i % 3 ? "," : "\n");
    WriteFile(File(), content);
    const std::vector<Listed> entries = EntriesFor(m_folder / L"data\\");
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].method, 8);
    EXPECT_EQ(entries[0].flags, 2) << "what says level 8 or 9";
    EXPECT_EQ(entries[0].size, content.size());
    EXPECT_EQ(entries[0].data, raw_archive::Deflate(content));
}

TEST_F(ZipWriting, WritesEmptyFiles)
{
    WriteFile(File(), "");
    const std::vector<Listed> entries = EntriesFor(L"");
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].size, 0u);
    EXPECT_EQ(entries[0].checksum, 0u);
}

// The time of a file's last write, in local time as DOS counts it.
std::uint32_t DosTimeOf(const std::wstring& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
    FILETIME local = {};
    SYSTEMTIME time = {};
    FileTimeToLocalFileTime(&data.ftLastWriteTime, &local);
    FileTimeToSystemTime(&local, &time);
    return (time.wYear - 1980u) << 25 | time.wMonth << 21 | time.wDay << 16 | time.wHour << 11 |
           time.wMinute << 5 | time.wSecond / 2u;
}

void SetLastWrite(const std::wstring& path, SYSTEMTIME time)
{
    FILETIME utc = {};
    SystemTimeToFileTime(&time, &utc);
    const HANDLE file =
        CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    SetFileTime(file, nullptr, nullptr, &utc);
    CloseHandle(file);
}

TEST_F(ZipWriting, StampsEntriesWithTheLastWriteInLocalTime)
{
    SetLastWrite(File(), {2023, 11, 0, 17, 22, 58, 36, 0});
    const std::vector<Listed> entries = EntriesFor(L"");
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].time, DosTimeOf(File()));
    EXPECT_EQ(entries[0].time >> 25, 2023u - 1980u);
}

TEST_F(ZipWriting, FileTimePutsTheDateAboveTheTime)
{
    SetLastWrite(File(), {2019, 2, 0, 3, 4, 5, 6, 0});
    unsigned long time = 0;
    EXPECT_TRUE(Times::FileTime(File().c_str(), time));
    EXPECT_EQ(time, DosTimeOf(File()));
}

TEST_F(ZipWriting, FileTimeStoresNothingForAMissingFile)
{
    unsigned long time = 77;
    EXPECT_FALSE(Times::FileTime((m_folder / L"missing").c_str(), time));
    EXPECT_FALSE(Times::FileTime(nullptr, time));
    EXPECT_FALSE(Times::FileTime(L"", time));
    EXPECT_EQ(time, 77u);
}

TEST_F(ZipWriting, AMissingFileFailsAndLeavesAnEmptyEntry)
{
    ZipCompress zip;
    zip.SetBasePath(m_folder / L"");
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    LogCapture log;
    EXPECT_FALSE(zip.AddFile((m_folder / L"missing").c_str()));
    ExpectLogged(log, L"-1");
    EXPECT_TRUE(zip.AddFile(File().c_str())) << "and the next as ever";
    zip.Close();
    const std::vector<Listed> entries = raw_archive::List(ReadFile(Archive()));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, "missing");
    EXPECT_EQ(entries[0].size, 0u);
    EXPECT_EQ(entries[0].time, 0x00200000u) << "what the zip library makes of a time stamp of 0";
    EXPECT_EQ(entries[1].data, raw_archive::Deflate("content"));
}

TEST_F(ZipWriting, NothingIsAddedWithoutAnArchive)
{
    ZipCompress zip;
    LogCapture log;
    EXPECT_FALSE(zip.AddFile(File().c_str()));
    ExpectLogged(log, L"-102");
    EXPECT_FALSE(zip.AddFile(nullptr));
    ExpectLogged(log, L"-102");
}

TEST_F(ZipWriting, ANameOfMoreThan65535BytesIsRefused)
{
    ZipCompress zip;
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    LogCapture log;
    EXPECT_FALSE(zip.AddFile(std::wstring(65536, L'x').c_str()));
    ExpectLogged(log, L"-102");
    zip.Close();
    EXPECT_TRUE(raw_archive::List(ReadFile(Archive())).empty());
}

// Reading this file fails: it is the memory of this process at address 0, on a system that offers
// it as a file.
TEST_F(ZipWriting, AReadErrorEndsTheCopyAndIsLogged)
{
    const wchar_t* const unreadable = L"Z:\\proc\\self\\mem";
    if (!test_support::FileExists(unreadable)) GTEST_SKIP() << "no file whose reading fails here";
    ZipCompress zip;
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    LogCapture log;
    EXPECT_FALSE(zip.AddFile(unreadable));
    ExpectLogged(log, L"-1");
    zip.Close();
    EXPECT_EQ(raw_archive::List(ReadFile(Archive())).size(), 1u);
}

TEST_F(ZipWriting, NoArchiveIsCreatedWhereNoFileCanBe)
{
    ZipCompress zip;
    EXPECT_FALSE(zip.Create((m_folder / L"missing\\out.zip").c_str()));
    EXPECT_FALSE(zip.Create(m_folder.Path().c_str()));
    EXPECT_FALSE(zip.Create(L""));
    EXPECT_FALSE(zip.Create(nullptr));
    LogCapture log;
    zip.Close();
    EXPECT_TRUE(log.Take().empty()) << "nothing is open, so nothing is closed";
}

TEST_F(ZipWriting, CreateClosesTheArchiveBeforeAndReplacesFiles)
{
    WriteFile(Archive(), std::string(100'000, 'x'));
    ZipCompress zip;
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    ASSERT_TRUE(zip.AddFile(File().c_str()));
    ASSERT_TRUE(zip.Create((m_folder / L"second.zip").c_str()));
    EXPECT_EQ(raw_archive::List(ReadFile(Archive())).size(), 1u);
    EXPECT_FALSE(zip.Create(nullptr)) << "and closes the second";
    EXPECT_TRUE(raw_archive::List(ReadFile(m_folder / L"second.zip")).empty());
}

TEST_F(ZipWriting, TheEndOfTheObjectClosesTheArchive)
{
    const DWORD before = test_support::HandleCount();
    {
        ZipCompress zip;
        ASSERT_TRUE(zip.Create(Archive().c_str()));
        ASSERT_TRUE(zip.AddFile(File().c_str()));
    }
    EXPECT_EQ(test_support::HandleCount(), before);
    EXPECT_EQ(raw_archive::List(ReadFile(Archive())).size(), 1u);
}

using test_support::ImportHook;

// Closes the file and says that it could not.
int FailingClose(std::FILE* file)
{
    std::fclose(file);
    return EOF;
}

TEST_F(ZipWriting, AFailedCloseOfTheArchiveIsLogged)
{
    ZipCompress zip;
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    const ImportHook hook(L"Utils_Statics.dll", "fclose", FailingClose);
    LogCapture log;
    zip.Close();
    ExpectLogged(log, L"-1");
    zip.Close();
    EXPECT_TRUE(log.Take().empty()) << "there is no archive any more";
}

// The data of a short file is written when its entry is closed; until then only headers are.
std::size_t FailingWrite(const void* bytes, std::size_t size, std::size_t count, std::FILE* file)
{
    constexpr std::size_t longestHead = 64;
    return size * count > longestHead ? 0 : std::fwrite(bytes, size, count, file);
}

TEST_F(ZipWriting, AFailedCloseOfAnEntryIsLogged)
{
    std::string noise;
    for (unsigned i = 0, next = 1; i < 1000; ++i, next = next * 1103515245 + 12345)
        noise += static_cast<char>(next >> 16);
    WriteFile(File(), noise);
    ZipCompress zip;
    zip.SetBasePath(m_folder / L"data\\");
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    {
        const ImportHook hook(L"Utils_Statics.dll", "fwrite", FailingWrite);
        LogCapture log;
        EXPECT_FALSE(zip.AddFile(File().c_str()));
        ExpectLogged(log, L"-1");
    }
}

TEST_F(ZipWriting, TakesThousandsOfEntries)
{
    ZipCompress zip;
    zip.SetBasePath(m_folder / L"data\\");
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    for (int i = 0; i < 5000; ++i)
        ASSERT_TRUE(zip.AddFile(File().c_str()));
    zip.Close();
    EXPECT_EQ(raw_archive::List(ReadFile(Archive())).size(), 5000u);
}

} // namespace
