// Archives that lie, break off or were tampered with: a false result, but no crash, endless loop or
// open file.
#include "ZipExtractFixture.h"

#include <qor_utils/zelLogger.h>
#include <test_support/ChildTest.h>
#include <test_support/Program.h>
#include <test_support/ResourceCounts.h>
#include <Utils_Statics/ZipCompress.h>

#include <random>

namespace {

class ZipDamage : public ZipReading
{
protected:
    // A process's first log line opens the log file and the way to a debugger. Both stay open, and
    // are not what the tests count.
    ZipDamage() { zelLogger::zelLogHelper("ZipDamage", 0, qor_utils::errorLevel)(L"a line"); }

    // Expects the first of two entries to fail and the second to be extracted.
    void ExpectFailure(const Entry& entry, const std::wstring& message)
    {
        Open({entry, Stored("after", "sound"), Stored("last", "")});
        LogCapture log;
        EXPECT_FALSE(m_zip.ExtractNext(nullptr));
        ExpectLogged(log, message);
        EXPECT_TRUE(m_zip.ExtractNext(nullptr));
        EXPECT_EQ(Content(L"after"), "sound");
    }

    // Extracts everything, up to a limit, and closes.
    void ExtractAll(const std::string& archive)
    {
        test_support::WriteFile(Archive(), archive);
        if (!m_zip.Open(Archive().c_str())) return;
        for (int i = 0; i < 12; ++i)
            m_zip.ExtractNext(nullptr);
        m_zip.Close();
    }
};

std::string Sample()
{
    std::string content;
    for (int i = 0; i < 200; ++i)
        content += std::to_string(i * 7919);
    Entry wide = Deflated("sub/wide", content);
    wide.wide = true;
    return raw_archive::Write({Stored("plain", content), Deflated("deflated", content),
                               WithDescriptor(Deflated("descriptor", content)), wide,
                               Stored("folder/", ""), Stored("last", "x")},
                              true);
}

TEST_F(ZipDamage, AWrongChecksumFails)
{
    Entry stored = Stored("a", "content");
    stored.checksum ^= 1;
    ExpectFailure(stored, L"error -105 with zipfile in unzCloseCurrentFile\n");
    Entry deflated = Deflated("a", "content");
    deflated.checksum ^= 0x80000000;
    ExpectFailure(deflated, L"error -105 with zipfile in unzCloseCurrentFile\n");
    Entry empty = Stored("a", "");
    empty.checksum = 1;
    ExpectFailure(empty, L"error -105 with zipfile in unzCloseCurrentFile\n");
}

TEST_F(ZipDamage, ASizeAboveTheTruthFails)
{
    Entry deflated = Deflated("a", "content");
    deflated.size += 1;
    ExpectFailure(deflated, L"error -103 with zipfile in unzReadCurrentFile\n");
    deflated.size = 100'000'000'000; // 100 GB
    ExpectFailure(deflated, L"error -103 with zipfile in unzReadCurrentFile\n");
    Entry stored = Stored("a", "content");
    stored.size += 1;
    ExpectFailure(stored, L"error -103 with zipfile in unzReadCurrentFile\n");
}

TEST_F(ZipDamage, ASizeBelowTheTruthFails)
{
    Entry deflated = Deflated("a", "content");
    deflated.size -= 1;
    ExpectFailure(deflated, L"error -105 with zipfile in unzCloseCurrentFile\n");
    Entry stored = Stored("a", "content");
    stored.size -= 1;
    ExpectFailure(stored, L"error -105 with zipfile in unzCloseCurrentFile\n");
}

TEST_F(ZipDamage, ACompressedSizeBelowTheTruthFails)
{
    Entry entry = Deflated("a", "some content that is not too short");
    entry.compressedSize -= 3;
    ExpectFailure(entry, L"error -5 with zipfile in unzReadCurrentFile\n");
}

TEST_F(ZipDamage, DataThatDoesNotInflateFails)
{
    Entry entry = Deflated("a", "content");
    entry.data.assign(entry.data.size(), '\xFF');
    ExpectFailure(entry, L"error -3 with zipfile in unzReadCurrentFile\n");
}

TEST_F(ZipDamage, OtherMethodsFailAndWriteNothing)
{
    for (const std::uint16_t method : std::initializer_list<std::uint16_t>{1, 6, 9, 12, 14, 99}) {
        Entry entry = Stored("a", "content");
        entry.method = method;
        ExpectFailure(entry, L"error -103 with zipfile in unzOpenCurrentFilePassword\n");
        EXPECT_FALSE(test_support::FileExists(Target() + L"\\a")) << method;
    }
}

TEST_F(ZipDamage, AnEncryptedEntryFailsWithoutItsPassword)
{
    Entry entry = Stored("a", std::string(12, 'h') + "what is encrypted");
    entry.flags = 1;
    entry.size -= 12;
    ExpectFailure(entry, L"error -105 with zipfile in unzCloseCurrentFile\n");
}

TEST_F(ZipDamage, ADirectoryThatEndsEarlyFails)
{
    std::string archive = raw_archive::Write({Stored("a", "content"), Stored("b", "content")});
    const std::size_t second = archive.rfind("PK\x01\x02");
    archive[second] = 'X';
    Open(archive);
    LogCapture log;
    EXPECT_FALSE(m_zip.ExtractNext(nullptr)) << "the way to the next entry is damaged";
    ExpectLogged(log, L"error -103 with zipfile in unzGoToNextFile\n");
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    ExpectLogged(log, L"error -103 with zipfile in unzGetCurrentFileInfo\n");
}

// An impossible number of entries makes no endless loop.
TEST_F(ZipDamage, AnEndlessNumberOfEntriesEnds)
{
    std::string archive = raw_archive::Write({Stored("a", "1"), Stored("b", "2")}, true);
    const std::size_t end = archive.rfind("PK\x06\x06");
    archive.replace(end + 24, 16, 16, '\x7F');
    Open(archive);
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
    EXPECT_FALSE(m_zip.ExtractNext(nullptr));
}

TEST_F(ZipDamage, ArchivesThatBreakOffDoNoHarm)
{
    const std::string archive = Sample();
    const DWORD before = test_support::HandleCount();
    for (std::size_t size = 0; size < archive.size(); size += 1 + size % 13)
        ExtractAll(archive.substr(0, size));
    EXPECT_EQ(test_support::HandleCount(), before);
    ExpectNothingOutside();
}

// The archive keeps its end, so that the reader begins, and lacks its middle.
TEST_F(ZipDamage, ArchivesWithAGapDoNoHarm)
{
    const std::string archive = Sample();
    for (std::size_t gap = 1; gap < archive.size() - 100; gap += 37)
        ExtractAll(archive.substr(0, 60) + archive.substr(60 + gap));
    ExpectNothingOutside();
}

TEST_F(ZipDamage, DamagedBytesDoNoHarm)
{
    const std::string archive = Sample();
    const DWORD before = test_support::HandleCount();
    std::minstd_rand random(3);
    for (int round = 0; round < 400; ++round) {
        std::string damaged = archive;
        for (unsigned i = 1 + random() % 6; i > 0; --i)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        ExtractAll(damaged);
    }
    EXPECT_EQ(test_support::HandleCount(), before);
    ExpectNothingOutside();
}

// disk-full runs this program under a limit on the size of files; 0 without one.
std::size_t FileLimit()
{
    const std::wstring limit = test_support::EnvironmentVariable(L"ZIP_FILE_LIMIT");
    return limit.empty() ? 0 : std::stoul(limit);
}

TEST_F(ZipDamage, DiskFullEndsTheExtraction)
{
    const std::size_t limit = FileLimit();
    if (limit == 0) GTEST_SKIP() << "run by disk-full, under a limit on the size of files";
    Entry bomb = Deflated("bomb", std::string(40 * limit, '\0')); // the archive is small enough
    bomb.size = 100'000'000'000;                                  // claims to be 100 GB
    const auto extract = [&] {
        Open({bomb, Stored("after", "sound"), Stored("last", "")});
        LogCapture log;
        EXPECT_FALSE(m_zip.ExtractNext(nullptr));
        ExpectLogged(log, L"error -1 with zipfile in fwrite\n");
        EXPECT_LE(Content(L"bomb").size(), limit);
        EXPECT_TRUE(m_zip.ExtractNext(nullptr));
        m_zip.Close();
    };
    const DWORD before = test_support::HandleCount();
    extract();
    EXPECT_EQ(test_support::HandleCount(), before);
}

// More is written than what the archive's writer keeps until the end of a file.
TEST_F(ZipDamage, DiskFullEndsAFileInItsMiddle)
{
    const std::size_t limit = FileLimit();
    if (limit == 0) GTEST_SKIP() << "run by disk-full, under a limit on the size of files";
    const std::wstring program = test_support::ProgramPath();
    ASSERT_GT(test_support::ReadFile(program).size(), 10 * limit);
    ZipCompress zip;
    ASSERT_TRUE(zip.Create(Archive().c_str()));
    LogCapture log;
    EXPECT_FALSE(zip.AddFile(program.c_str()));
    const auto messages = log.Take();
    ASSERT_EQ(messages.size(), 2u) << "of the write, and of the entry's end";
    EXPECT_EQ(messages[0].text, L"-1");
    EXPECT_EQ(messages[1].text, L"-1");
}

TEST_F(ZipDamage, DiskFullEndsThePacking)
{
    const std::size_t limit = FileLimit();
    if (limit == 0) GTEST_SKIP() << "run by disk-full, under a limit on the size of files";
    std::minstd_rand random(5);
    std::string noise(limit - 100, '\0');
    for (char& byte : noise)
        byte = static_cast<char>(random());
    test_support::WriteFile(m_folder / L"noise", noise);
    const auto pack = [&] {
        ZipCompress zip;
        ASSERT_TRUE(zip.Create(Archive().c_str()));
        LogCapture log;
        bool added = true;
        for (int i = 0; i < 4 && added; ++i)
            added = zip.AddFile((m_folder / L"noise").c_str());
        EXPECT_FALSE(added);
        zip.Close();
        const auto messages = log.Take();
        EXPECT_FALSE(messages.empty());
        for (const auto& message : messages)
            EXPECT_EQ(message.text, L"-1");
    };
    const DWORD before = test_support::HandleCount();
    pack();
    EXPECT_EQ(test_support::HandleCount(), before);
}

} // namespace
