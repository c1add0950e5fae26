// Texts by key, formatted with arguments, and texts translated by themselves.
#include "GetStrFixture.h"

#include <cfloat>
#include <cstddef>

namespace {

TEST_F(GetStrTest, GivesTheTextInTheCurrentLanguage)
{
    table.Add("plain", "Save", "Sichern");
    table.Add("untranslated", "Open");
    table.Load();
    EXPECT_STREQ(GetStr("plain"), L"Sichern");
    EXPECT_STREQ(GetStr("untranslated"), L"Open");
    EXPECT_EQ(log.Take(), Messages{});
}

TEST_F(GetStrTest, GivesAnEmptyTextForANullKey)
{
    table.Load();
    EXPECT_TRUE(GetStr(nullptr).IsEmpty());
}

TEST_F(GetStrTest, ShowsAnUnknownKeyButNeverFormatsIt)
{
    table.Load();
    EXPECT_STREQ(GetStr("no.such.key"), L"no.such.key");
    EXPECT_STREQ(GetStr("%s.no.such.key"), L"");
    EXPECT_EQ(log.Take(), Messages{});
}

TEST_F(GetStrTest, FormatsTheTranslationWithTheArguments)
{
    table.Add("images", "%d images of %s", "%d Bilder von %s");
    table.Load();
    EXPECT_STREQ(GetStr("images", 7, L"Meier"), L"7 Bilder von Meier");
    EXPECT_EQ(log.Take(), Messages{});
}

TEST_F(GetStrTest, AllowsATranslationThatUsesFewerOfTheArguments)
{
    table.Add("images", "%d images of %s", "%d Bilder");
    table.Add("none", "%d images", "Bilder");
    table.Load();
    EXPECT_STREQ(GetStr("images", 7, L"Meier"), L"7 Bilder");
    EXPECT_STREQ(GetStr("none", 7), L"Bilder");
    EXPECT_EQ(log.Take(), Messages{});
}

TEST_F(GetStrTest, PrintsPercentSigns)
{
    table.Add("percent", "%d %%", "%d%% fertig %%");
    table.Load();
    EXPECT_STREQ(GetStr("percent", 50), L"50% fertig %");
}

TEST_F(GetStrTest, PrintsNullTextsAsSuch)
{
    table.Add("null", "[%s|%S|%.2s]");
    table.Load();
    EXPECT_STREQ(GetStr("null", static_cast<wchar_t*>(nullptr), static_cast<char*>(nullptr),
                        static_cast<wchar_t*>(nullptr)),
                 L"[(null)|(null)|(n]");
}

TEST_F(GetStrTest, LooksAtNoMoreOfATextThanThePrecisionAsksFor)
{
    table.Add("bounded", "[%.3s|%.2S]");
    table.Load();
    const wchar_t wide[3] = {L'a', L'b', L'c'};
    const char narrow[2] = {'d', 'e'};
    EXPECT_STREQ(GetStr("bounded", wide, narrow), L"[abc|de]");
}

TEST_F(GetStrTest, IgnoresSignFlagsOfUnsignedNumbers)
{
    table.Add("unsigned", "[%+u|% x|%+5o]");
    table.Load();
    EXPECT_STREQ(GetStr("unsigned", 7, 8, 9), L"[7|8|   11]");
}

TEST_F(GetStrTest, PrintsAddressesWithAllTheirDigits)
{
    table.Add("address", "%p");
    table.Load();
    const std::wstring digits = sizeof(void*) == 8 ? L"000000000000ABCD" : L"0000ABCD";
    EXPECT_EQ(std::wstring(GetStr("address", reinterpret_cast<void*>(0xabcd))), digits);
}

TEST_F(GetStrTest, TruncatesShortAndCharacterSizes)
{
    table.Add("sizes", "%hd %hu %hhd %hhx");
    table.Load();
    EXPECT_STREQ(GetStr("sizes", 0x18001, -1, 0x1ff, 0x1ff), L"-32767 65535 -1 ff");
}

TEST_F(GetStrTest, KnowsTheSpellingsThatOlderLibrariesDoNot)
{
    table.Add("real", "%F %.1F");
    table.Add("large", "%jd %jX");
    table.Load();
    EXPECT_STREQ(GetStr("real", 1.5, -0.25), L"1.500000 -0.3");
    EXPECT_STREQ(GetStr("large", -(1ll << 40), 1ll << 40), L"-1099511627776 10000000000");
}

TEST_F(GetStrTest, PadsTextsWithZerosWhereTheFlagAsksForThem)
{
    table.Add("padded", "%05s|%-05s|%03c");
    table.Load();
    EXPECT_STREQ(GetStr("padded", L"ab", L"cd", L'e'), L"000ab|cd   |00e");
}

TEST_F(GetStrTest, KnowsTheSizesThatFollowThePointer)
{
    table.Add("sizes", "%Iu %zu %td");
    table.Load();
    const std::size_t large = static_cast<std::size_t>(-1);
    const std::wstring expected = std::to_wstring(large);
    EXPECT_EQ(GetStr("sizes", large, large, static_cast<std::ptrdiff_t>(-7)),
              (expected + L" " + expected + L" -7").c_str());
}

TEST_F(GetStrTest, PrintsTheLargestNumbersAtTheLargestWidthsAndPrecisions)
{
    table.Add("large", "%1024.1024f|%1024d|%.1024d|%-1024s|");
    table.Load();
    const CString text = GetStr("large", -DBL_MAX, 1, 1, L"x");
    EXPECT_EQ(text.GetLength(), 1 + 309 + 1 + 1024 + 1 + 3 * 1025);
    EXPECT_EQ(text.Left(10), L"-179769313");
}

TEST_F(GetStrTest, PrintsTextsOfAnyLengthAndCharactersBeyondTheBasicPlane)
{
    table.Add("long", "[%s]");
    table.Load();
    std::wstring text(100000, L'x');
    text += L"\U0001F600";
    EXPECT_EQ(GetStr("long", text.c_str()), (L"[" + text + L"]").c_str());
}

TEST_F(GetStrTest, HasNoLimitOnTheNumberOfConversions)
{
    table.Add("many", "%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d");
    table.Load();
    EXPECT_STREQ(
        GetStr("many", 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2, 3, 4),
        L"123456789012345678901234");
}

TEST(TranslateStr, GivesTheTranslationOrAnEmptyText)
{
    TestStringTable table;
    table.Add("plain", "Save", "Sichern");
    table.Load();
    EXPECT_STREQ(TranslateStr(L"Save"), L"Sichern");
    EXPECT_TRUE(TranslateStr(L"a text that no table has").IsEmpty());
    EXPECT_TRUE(TranslateStr(nullptr).IsEmpty());
}

} // namespace
