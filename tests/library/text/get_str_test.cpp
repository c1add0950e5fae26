// Texts by key, formatted with arguments, and texts translated by themselves.
#include "GetStrFixture.h"

#include <cfloat>
#include <cstddef>

using test_support::LogCapture;

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

// Translations that break the base text's conversions: which are used, and what is logged.

struct WrongTranslation
{
    const char* name;
    const char* text;
};

class WrongTranslationTest : public testing::TestWithParam<WrongTranslation>
{
};

TEST_P(WrongTranslationTest, FallsBackToTheBaseTextAndSaysSo)
{
    TestStringTable table;
    table.Add("key", "[%d]", GetParam().text);
    table.Load();
    LogCapture log;
    EXPECT_STREQ(GetStr("key", 42), L"[42]");
    EXPECT_EQ(log.Take(), Messages{DoesNotMatch("key", GetParam().text, "[%d]")});
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongTranslationTest,
    testing::Values(
        WrongTranslation{"TextForNumber", "[%s]"}, WrongTranslation{"NarrowTextForNumber", "[%S]"},
        WrongTranslation{"RealForNumber", "[%f]"}, WrongTranslation{"WiderNumber", "[%I64d]"},
        WrongTranslation{"WiderNumberByLl", "[%lld]"}, WrongTranslation{"PointerForNumber", "[%p]"},
        WrongTranslation{"MoreThanGiven", "[%d %d]"},
        WrongTranslation{"TextAfterNumber", "[%d %s]"}, WrongTranslation{"WritingToMemory", "[%n]"},
        WrongTranslation{"WritingToMemoryLater", "[%d %n]"},
        WrongTranslation{"WritingWide", "[%lln]"}, WrongTranslation{"HugeWidth", "[%999999999d]"},
        WrongTranslation{"EndlessWidth", "[%99999999999999999999999999999d]"},
        WrongTranslation{"WidthJustAbove", "[%1025d]"},
        WrongTranslation{"HugePrecision", "[%.999999999d]"},
        WrongTranslation{"WidthArgument", "[%*d]"}, WrongTranslation{"PrecisionArgument", "[%.*d]"},
        WrongTranslation{"Positional", "[%1$d]"}, WrongTranslation{"PositionalText", "[%1$s]"},
        WrongTranslation{"UnknownConversion", "[%q]"}, WrongTranslation{"UnknownSize", "[%I16d]"},
        WrongTranslation{"LongDouble", "[%Lf]"}, WrongTranslation{"Lonely", "[%d] 100 %"},
        WrongTranslation{"SizeOnly", "[%l"}, WrongTranslation{"FlagsOnly", "[%-+ #0"},
        WrongTranslation{"WidthOnly", "[%12"}, WrongTranslation{"PointOnly", "[%."},
        WrongTranslation{"PercentWithWidth", "[%5%]"}, WrongTranslation{"Bracket", "[%[a-z]]"}),
    [](const auto& each) { return each.param.name; });

TEST_F(GetStrTest, RefusesKindsThatAreNotTheContracts)
{
    table.Add("text", "%s", "%d");
    table.Add("wide", "%s", "%hs");
    table.Add("narrow", "%S", "%s");
    table.Add("real", "%f", "%d");
    table.Add("large", "%I64d", "%d");
    table.Add("pointer", "%p", "%x");
    table.Add("order", "%d %s", "%s %d");
    table.Load();
    EXPECT_STREQ(GetStr("text", L"abc"), L"abc");
    EXPECT_STREQ(GetStr("wide", L"abc"), L"abc");
    EXPECT_STREQ(GetStr("narrow", "abc"), L"abc");
    EXPECT_STREQ(GetStr("real", 1.5), L"1.500000");
    EXPECT_STREQ(GetStr("large", 1ll << 40), L"1099511627776");
    GetStr("pointer", static_cast<void*>(this));
    EXPECT_STREQ(GetStr("order", 1, L"x"), L"1 x");
    EXPECT_EQ(log.Take().size(), 7u);
}

TEST_F(GetStrTest, TakesAnotherSpellingOfTheSameKind)
{
    table.Add("hex", "%d", "0x%08lX");
    table.Add("long", "%ld", "%I32i");
    table.Add("large", "%lld", "%I64x");
    table.Add("text", "%s", "%10.2ls|");
    table.Add("narrow", "%S", "%hs");
    table.Add("letter", "%d", "%c");
    table.Add("real", "%f", "%.2le");
    table.Load();
    EXPECT_STREQ(GetStr("hex", 255), L"0x000000FF");
    EXPECT_STREQ(GetStr("long", -5l), L"-5");
    EXPECT_STREQ(GetStr("large", 255ll), L"ff");
    EXPECT_STREQ(GetStr("text", L"abc"), L"        ab|");
    EXPECT_STREQ(GetStr("narrow", "abc"), L"abc");
    EXPECT_STREQ(GetStr("letter", 'A'), L"A");
    EXPECT_STREQ(GetStr("real", 1234.5), L"1.23e+003");
    EXPECT_EQ(log.Take(), Messages{});
}

TEST_F(GetStrTest, LogsTwiceWhenTheBaseTextIsUnusableAsWell)
{
    table.Add("both", "base %n", "text %s");
    table.Load();
    int written = 5;
    EXPECT_TRUE(GetStr("both", &written).IsEmpty());
    EXPECT_EQ(written, 5);
    EXPECT_EQ(log.Take(), (Messages{DoesNotMatch("both", "text %s", "base %n"),
                                    NotSatisfied(1180, "both", "base %n")}));
}

TEST_F(GetStrTest, LogsOnceWhenTheTextIsTheBaseText)
{
    table.Add("same", "never %n", "never %n");
    table.Add("untranslated", "wide %*d");
    table.Add("bomb", "%999999999d");
    table.Load();
    EXPECT_TRUE(GetStr("same").IsEmpty());
    EXPECT_EQ(log.Take(), Messages{NotSatisfied(1187, "same", "never %n")});
    EXPECT_TRUE(GetStr("untranslated", 3, 4).IsEmpty());
    EXPECT_EQ(log.Take(), Messages{NotSatisfied(1187, "untranslated", "wide %*d")});
    EXPECT_TRUE(GetStr("bomb", 1).IsEmpty());
    EXPECT_EQ(log.Take(), Messages{NotSatisfied(1187, "bomb", "%999999999d")});
}

TEST_F(GetStrTest, ReadsTheContractUpToItsFirstUnusableConversion)
{
    table.Add("prefix", "%d then %n", "nur %d");
    table.Add("plain", "%q", "ohne");
    table.Load();
    EXPECT_STREQ(GetStr("prefix", 3), L"nur 3");
    EXPECT_STREQ(GetStr("plain"), L"ohne");
    EXPECT_EQ(log.Take(), Messages{});
}

} // namespace
