// The names of entries come from outside. None leads out of the current folder.
#include "zip_extract_fixture.h"

#include <random>

namespace {

using raw_archive::Stored;
using test_support::LogCapture;
using Names = std::set<std::string>;

class ZipNames : public ZipReading
{
protected:
    // Where an entry's content lands, relative to the target; "" when it is skipped. Everything
    // that was written is taken away again.
    std::string LandsAt(const std::string& name, std::uint16_t flags = 0)
    {
        raw_archive::Entry entry = Stored(name, "content");
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

    // That an entry is skipped and the log says so, once.
    void ExpectRefused(const std::string& name, std::uint16_t flags = 0)
    {
        LogCapture log;
        EXPECT_EQ(LandsAt(name, flags), "") << name;
        const auto messages = log.Take();
        ASSERT_EQ(messages.size(), 1u) << name;
        EXPECT_EQ(messages[0].source, "Utils_Statics/ZipArchive");
        EXPECT_EQ(messages[0].level, 1);
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

TEST_F(ZipNames, WithParentFoldersAreRefused)
{
    for (const char* name : {"../a", "..\\a", "a/../b", "a/../../b", "a/b/..", "/../a", "C:..\\a",
                             "C:\\..\\a", "./../a", "..", "..\\..\\..\\..\\..\\..\\a", ".. /a",
                             "... /a", ".../a", "a/.. ./b", ". ./a"})
        ExpectRefused(name);
}

TEST_F(ZipNames, OfDevicesAreRefused)
{
    for (const char* name :
         {"CON", "con", "Nul", "aux.txt", "PRN.tar.gz", "COM1", "com9.log", "LPT3", "a/NUL",
          "nul/a", "NUL .txt", "CONIN$", "conout$", "COM0", "sub\\lpt1.x\\a"})
        ExpectRefused(name);
    ExpectRefused("COM\xC2\xB9", 0x800); // a superscript one is a digit there
    for (const char* name : {"CONSOLE", "COM", "COM10", "LPTX", "NULL.txt", "xCON"})
        EXPECT_EQ(LandsAt(name), name);
}

TEST_F(ZipNames, OfStreamsAndDevicePathsAreRefused)
{
    for (const char* name : {"a.txt:stream", "a.txt::$DATA", "sub:x/a", "C:\\D:\\a", "\\\\?\\C:\\a",
                             "\\\\.\\C:\\a", "\\??\\C:\\a", "1:a"})
        ExpectRefused(name);
}

TEST_F(ZipNames, ThatThePlatformWouldChangeAreRefused)
{
    for (const char* name : {"a.", "a ", "a. ", "sub./a", "sub /a", "a\\b. .\\c"})
        ExpectRefused(name);
}

TEST_F(ZipNames, WithForbiddenCharactersAreRefused)
{
    for (const char* name : {"a?", "*", "a|b", "<a>", "\"a\"", "a\tb", "a\nb", "\x01", "sub?/a"})
        ExpectRefused(name);
}

TEST_F(ZipNames, OfNothingButADriveAreRefused)
{
    ExpectRefused("C:");
    ExpectRefused(".");
}

TEST_F(ZipNames, EndAtTheirFirstNull)
{
    EXPECT_EQ(LandsAt(std::string("a.txt\0.exe", 10)), "a.txt");
}

TEST_F(ZipNames, OfFoldersDoNotLeadOutside)
{
    for (const char* name : {"../", "..\\evil\\", "sub/../../evil/", "NUL/", "ab:c/", "sub./"}) {
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

TEST_F(ZipNames, AreReadUpToTheirBuffer)
{
    const std::wstring target = Target();
    const std::string fits(200 - std::min<std::size_t>(target.size(), 100), 'n');
    EXPECT_EQ(LandsAt(fits), fits);
    for (const std::size_t size : {256, 257, 300, 1000, 65535}) {
        ExpectRefused(std::string(size, 'n'));
        ExpectRefused(std::string(size - 1, 'n') + "/");
        ExpectRefused(std::string(255, 'n') + "/" + std::string(size - 256, 'm'));
    }
}

// Where the platform's limit lies is its own affair.
TEST_F(ZipNames, TooLongForThePlatformAreSkipped)
{
    for (const std::string& name : {std::string(255, 'n'), "a/" + std::string(253, 'n')}) {
        const std::string landed = LandsAt(name);
        EXPECT_TRUE(landed.empty() || landed == name) << landed;
    }
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
    ExpectRefused("\xC0\xAE\xC0\xAE/..", utf8); // dots in a form that UTF-8 does not allow
}

// Names composed of what is dangerous, at random.
TEST_F(ZipNames, NeverLeadOutside)
{
    static const char* const pieces[] = {"..", ".", "/",  "\\",  "C:", ":",  "a",   "NUL",
                                         " ",  "b", "..", "\\?", "\0", "//", "...", "x"};
    std::minstd_rand random(11);
    std::vector<raw_archive::Entry> entries;
    for (int i = 0; i < 400; ++i) {
        std::string name;
        for (unsigned k = 1 + random() % 7; k > 0; --k)
            name += pieces[random() % std::size(pieces)];
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
