// The names of entries come from outside. None leads out of the current folder. A name that stays
// inside is extracted.
#include "ZipExtractFixture.h"

#include <base/FilePath.h>

#include <cstring>
#include <random>

namespace {

class ZipNames : public ZipReading
{
protected:
    // The place of an entry's content, relative to the target; "" when the entry is skipped.
    // Everything that was written is removed again.
    std::string LandsAt(const std::string& name, std::uint16_t flags = 0)
    {
        Entry entry = Stored(name, "content");
        entry.flags = flags;
        Open({entry, Stored("next", "")});
        EXPECT_TRUE(m_zip.ExtractNext(nullptr)) << name << ": a skipped entry counts as success";
        ExpectNothingOutside();
        std::string landed;
        for (const std::string& found : Below(Target()))
            if (!std::filesystem::is_directory(found)) landed = found;
        for (const auto& found : std::filesystem::directory_iterator(Target()))
            std::filesystem::remove_all(found);
        return landed;
    }

    // Expects that an entry is skipped and that the log says so, once.
    void ExpectRefused(const std::string& name, std::uint16_t flags = 0)
    {
        LogCapture log;
        EXPECT_EQ(LandsAt(name, flags), "") << name;
        const auto messages = log.Take();
        ASSERT_EQ(messages.size(), 1u) << name;
        EXPECT_EQ(messages[0].source, "Utils_Statics/ZipArchive");
        EXPECT_EQ(messages[0].level, 1);
    }

    // Expects that no file of the name can be created, which is no error.
    void ExpectSkipped(const std::string& name)
    {
        LogCapture log;
        EXPECT_EQ(LandsAt(name), "") << name;
        EXPECT_TRUE(log.Take().empty()) << name;
    }
};

TEST_F(ZipNames, WithoutAFolderLandInTheCurrentOne)
{
    EXPECT_EQ(LandsAt("a.txt"), "a.txt");
    EXPECT_EQ(LandsAt(".hidden"), ".hidden");
    EXPECT_EQ(LandsAt("two  words .txt"), "two  words .txt");
    EXPECT_EQ(LandsAt(" leading"), " leading");
    EXPECT_EQ(LandsAt("..a"), "..a");
    EXPECT_EQ(LandsAt("a..b"), "a..b");
}

TEST_F(ZipNames, WithRootsAndDrivesAreBroughtInside)
{
    EXPECT_EQ(LandsAt("/etc/passwd"), "etc/passwd");
    EXPECT_EQ(LandsAt("\\a\\b.txt"), "a/b.txt") << "as ours are when the base has no separator";
    EXPECT_EQ(LandsAt("C:\\data\\a.txt"), "data/a.txt") << "as ours are outside of the base";
    EXPECT_EQ(LandsAt("z:/data/a.txt"), "data/a.txt");
    EXPECT_EQ(LandsAt("C:a.txt"), "a.txt");
    EXPECT_EQ(LandsAt("\\\\server\\share\\a.txt"), "server/share/a.txt");
    EXPECT_EQ(LandsAt("//a///b//c"), "a/b/c");
    EXPECT_EQ(LandsAt("./a/./b"), "a/b");
}

TEST_F(ZipNames, WithParentFoldersThatStayInsideAreExtracted)
{
    EXPECT_EQ(LandsAt("a/../b"), "b");
    EXPECT_EQ(LandsAt("a/b/../../c/d"), "c/d");
    EXPECT_EQ(LandsAt("\\a\\..\\b\\c"), "b/c");
    EXPECT_EQ(LandsAt("C:\\data\\..\\a.txt"), "a.txt");
}

TEST_F(ZipNames, WithParentFoldersThatLeadOutAreRefused)
{
    for (const char* name : {"../a", "..\\a", "a/../../b", "a/../../../b", "/../a", "C:..\\a",
                             "C:\\..\\a", "./../a", "..", "..\\..\\..\\..\\..\\..\\a"})
        ExpectRefused(name);
}

// Such a folder could be made, and a later reader could take its name for the parent folder.
TEST_F(ZipNames, WithFoldersOfDotsAndBlanksAreRefused)
{
    for (const char* name :
         {".. /a", "... /a", ".../a", "a/.. ./b", "..../a", ".. \\.. \\a", " /a", "a/. /b"})
        ExpectRefused(name);
    for (const char* name : {"... ", "....", ". . ."}) // the platform reduces them to nothing
        ExpectSkipped(name);
}

// The platform strips dots and blanks from the end of a name, and one dot from the end of a
// folder's.
TEST_F(ZipNames, ThatEndInDotsOrBlanksAreExtractedAsThePlatformReadsThem)
{
    EXPECT_EQ(LandsAt("Smith Jr.\\x.txt"), "Smith Jr/x.txt");
    EXPECT_EQ(LandsAt("sub./a"), "sub/a");
    EXPECT_EQ(LandsAt("a."), "a");
    EXPECT_EQ(LandsAt("a "), "a");
    EXPECT_EQ(LandsAt("a. ."), "a");
}

TEST_F(ZipNames, OfDevicesAreRefused)
{
    for (const char* name : {"CON", "con", "Nul", "COM1", "com9.log", "LPT3", "a/NUL", "NUL .txt",
                             "nul/a", "NUL/NUL/a"})
        ExpectRefused(name);
    for (const char* name : {"CONSOLE", "COM", "COM10", "LPTX", "NULL.txt", "xCON"})
        EXPECT_EQ(LandsAt(name), name);
}

// The platform decides which further names are devices.
TEST_F(ZipNames, OfDevicesAreThoseOfThePlatform)
{
    for (const char* name : {"CONIN$", "conout$", "COM0", "aux.txt", "PRN.tar.gz", "LPT4.a.b"}) {
        const std::wstring wide(name, name + std::strlen(name));
        if (base::FullPath(wide.c_str()).starts_with(L"\\\\.\\"))
            ExpectRefused(name);
        else
            EXPECT_EQ(LandsAt(name), name);
    }
}

TEST_F(ZipNames, OfStreamsAndDevicePathsAreRefused)
{
    for (const char* name : {"a.txt:stream", "a.txt::$DATA", "sub:x/a", "C:\\D:\\a", "\\\\?\\C:\\a",
                             "\\\\.\\C:\\a", "\\??\\C:\\a", "1:a"})
        ExpectRefused(name);
}

TEST_F(ZipNames, ThatNoFileCanHaveAreSkipped)
{
    for (const char* name : {"a?", "*", "a|b", "<a>", "\"a\"", "sub?/a", "C:", ".", "a/.."})
        ExpectSkipped(name);
}

TEST_F(ZipNames, ThatDifferInCaseAreTheSameFile)
{
    Open({Stored("Sub/Name.txt", "the first, which is longer"), Stored("sub/NAME.TXT", "second"),
          Stored("SUB/other", "other"), Stored("last", "")});
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Below(Target()), (Names{"Sub", "Sub/Name.txt", "Sub/other"}));
    EXPECT_EQ(Content(L"sub\\name.txt"), "second") << "the later one wins";
}

TEST_F(ZipNames, EndAtTheirFirstNull)
{
    EXPECT_EQ(LandsAt(std::string("a.txt\0.exe", 10)), "a.txt");
}

TEST_F(ZipNames, OfFoldersDoNotLeadOutside)
{
    for (const char* name : {"../", "..\\evil\\", "sub/../../evil/", "ab:c/"}) {
        Open({Stored(name, ""), Stored("next", "")});
        LogCapture log;
        EXPECT_FALSE(m_zip.ExtractNext(nullptr)) << name << ": no folder was created";
        EXPECT_EQ(log.Take().size(), 1u) << name;
        EXPECT_TRUE(Below(Target()).empty()) << name;
        ExpectNothingOutside();
    }
    Open({Stored("C:\\sub\\", "")});
    EXPECT_TRUE(m_zip.ExtractNext(nullptr));
    EXPECT_EQ(Below(Target()), Names{"sub"});
}

TEST_F(ZipNames, OfFoldersMayNotBeEmpty)
{
    for (const char* name : {"", "/", "\\\\", "C:\\"}) {
        Open({Stored(name, ""), Stored("next", "")});
        EXPECT_FALSE(m_zip.ExtractNext(nullptr)) << name;
        EXPECT_TRUE(Below(Target()).empty()) << name;
    }
}

TEST_F(ZipNames, AreReadWholeWhateverTheirLength)
{
    for (const std::size_t size : {240, 255, 256, 257, 300, 10000, 60000})
        EXPECT_EQ(LandsAt(std::string(size, '/') + "a.txt"), "a.txt") << size;
    std::string name; // 101 characters, 301 bytes
    for (int i = 0; i < 100; ++i)
        name += i == 50 ? "/\xE4\xB8\xAD" : "\xE4\xB8\xAD";
    EXPECT_EQ(LandsAt(name, 0x800), name);
}

// The platform decides where the limit lies.
TEST_F(ZipNames, TooLongForThePlatformAreSkipped)
{
    for (const std::size_t size : {300, 1000, 65535})
        ExpectSkipped(std::string(size, 'n'));
}

TEST_F(ZipNames, AreReadInTheEncodingTheyName)
{
    constexpr std::uint16_t utf8 = 0x800;
    EXPECT_EQ(LandsAt("\xC3\xA9t\xC3\xA9.txt", utf8), "\xC3\xA9t\xC3\xA9.txt");
    EXPECT_EQ(LandsAt("\xE4\xB8\xAD/\xF0\x9F\x98\x80", utf8), "\xE4\xB8\xAD/\xF0\x9F\x98\x80");
    char ansi[8] = {};
    WideCharToMultiByte(CP_ACP, 0, L"\u00E9", -1, ansi, sizeof ansi, nullptr, nullptr);
    EXPECT_EQ(LandsAt(ansi), "\xC3\xA9") << "the system's code page";
}

TEST_F(ZipNames, ThatAreNotUtf8InSpiteOfTheirFlagAreReadInTheCodePage)
{
    constexpr std::uint16_t utf8 = 0x800;
    EXPECT_NE(LandsAt("\xFF\xFE.txt", utf8), "");
    EXPECT_NE(LandsAt("\xC0\xAE\xC0\xAE/a", utf8), "") << "no dots: UTF-8 does not allow the form";
}

// The names are random combinations of dangerous parts.
TEST_F(ZipNames, NeverLeadOutside)
{
    static const char* const parts[] = {"..", ".",  "..", "\\",  "C:", "a:",  "a",  "NUL",
                                        " ",  "..", "b",  "\\?", "",   "...", "..", "x"};
    std::minstd_rand random(11);
    std::vector<Entry> entries;
    for (int i = 0; i < 400; ++i) {
        std::string name;
        for (unsigned k = 1 + random() % 7; k > 0; --k)
            name += std::string(parts[random() % std::size(parts)]) + "/";
        entries.push_back(Stored(name + "e" + std::to_string(i), "content"));
    }
    entries.push_back(Stored("last", ""));
    Open(entries);
    for (int i = 0; i < 400; ++i)
        ASSERT_TRUE(m_zip.ExtractNext(nullptr)) << entries[static_cast<std::size_t>(i)].name;
    ExpectNothingOutside();
    EXPECT_FALSE(Below(Target()).empty());
}

} // namespace
