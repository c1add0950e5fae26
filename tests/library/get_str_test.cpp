#include "TestStringTable.h"

#include <Utils_Statics/GetStr.h>
#include <test_support/LogCapture.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <regex>

using test_support::LogCapture;
using test_support::LoggedMessage;

namespace {

std::wstring Wide(const std::string& text)
{
    return std::wstring(text.begin(), text.end());
}

LoggedMessage DoesNotMatch(const std::string& key, const std::string& text, const std::string& base)
{
    return {"Utils_Statics/Utils_Statics", 1170, 1,
            L"[" + Wide(key) + L"] - The string '" + Wide(text) +
                L"' could not be formated.  It probably doesn't match the format specifier(s) found in '" + Wide(base) +
                L"'."};
}

LoggedMessage NotSatisfied(int line, const std::string& key, const std::string& text)
{
    return {"Utils_Statics/Utils_Statics", line, 1,
            L"[" + Wide(key) + L"] - The string '" + Wide(text) +
                L"' could not be formated.  It's likely that the expected format specifier(s) were not satisfied."};
}

using Messages = std::vector<LoggedMessage>;

class GetStrTest : public testing::Test
{
protected:
    TestStringTable table;
    LogCapture log;
};

TEST_F(GetStrTest, GivesTheTextInTheCurrentLanguage)
{
    table.add("plain", "Save", "Sichern");
    table.add("untranslated", "Open");
    table.load();
    EXPECT_STREQ(GetStr("plain"), L"Sichern");
    EXPECT_STREQ(GetStr("untranslated"), L"Open");
    EXPECT_EQ(log.take(), Messages{});
}

TEST_F(GetStrTest, GivesAnEmptyTextForANullKey)
{
    table.load();
    EXPECT_TRUE(GetStr(nullptr).IsEmpty());
}

TEST_F(GetStrTest, ShowsAnUnknownKeyButNeverFormatsIt)
{
    table.load();
    EXPECT_STREQ(GetStr("no.such.key"), L"no.such.key");
    EXPECT_STREQ(GetStr("%s.no.such.key"), L"");
    EXPECT_EQ(log.take(), Messages{});
}

TEST_F(GetStrTest, FormatsTheTranslationWithTheArguments)
{
    table.add("images", "%d images of %s", "%d Bilder von %s");
    table.load();
    EXPECT_STREQ(GetStr("images", 7, L"Meier"), L"7 Bilder von Meier");
    EXPECT_EQ(log.take(), Messages{});
}

TEST_F(GetStrTest, AllowsATranslationThatUsesFewerOfTheArguments)
{
    table.add("images", "%d images of %s", "%d Bilder");
    table.add("none", "%d images", "Bilder");
    table.load();
    EXPECT_STREQ(GetStr("images", 7, L"Meier"), L"7 Bilder");
    EXPECT_STREQ(GetStr("none", 7), L"Bilder");
    EXPECT_EQ(log.take(), Messages{});
}

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
    table.add("key", "[%d]", GetParam().text);
    table.load();
    LogCapture log;
    EXPECT_STREQ(GetStr("key", 42), L"[42]");
    EXPECT_EQ(log.take(), Messages{DoesNotMatch("key", GetParam().text, "[%d]")});
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongTranslationTest,
    testing::Values(WrongTranslation{"TextForNumber", "[%s]"}, WrongTranslation{"NarrowTextForNumber", "[%S]"},
                    WrongTranslation{"RealForNumber", "[%f]"}, WrongTranslation{"WiderNumber", "[%I64d]"},
                    WrongTranslation{"WiderNumberByLl", "[%lld]"}, WrongTranslation{"PointerForNumber", "[%p]"},
                    WrongTranslation{"MoreThanGiven", "[%d %d]"}, WrongTranslation{"TextAfterNumber", "[%d %s]"},
                    WrongTranslation{"WritingToMemory", "[%n]"}, WrongTranslation{"WritingToMemoryLater", "[%d %n]"},
                    WrongTranslation{"WritingWide", "[%lln]"}, WrongTranslation{"HugeWidth", "[%999999999d]"},
                    WrongTranslation{"EndlessWidth", "[%99999999999999999999999999999d]"},
                    WrongTranslation{"WidthJustAbove", "[%1025d]"}, WrongTranslation{"HugePrecision", "[%.999999999d]"},
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
    table.add("text", "%s", "%d");
    table.add("wide", "%s", "%hs");
    table.add("narrow", "%S", "%s");
    table.add("real", "%f", "%d");
    table.add("large", "%I64d", "%d");
    table.add("pointer", "%p", "%x");
    table.add("order", "%d %s", "%s %d");
    table.load();
    EXPECT_STREQ(GetStr("text", L"abc"), L"abc");
    EXPECT_STREQ(GetStr("wide", L"abc"), L"abc");
    EXPECT_STREQ(GetStr("narrow", "abc"), L"abc");
    EXPECT_STREQ(GetStr("real", 1.5), L"1.500000");
    EXPECT_STREQ(GetStr("large", 1ll << 40), L"1099511627776");
    GetStr("pointer", static_cast<void*>(this));
    EXPECT_STREQ(GetStr("order", 1, L"x"), L"1 x");
    EXPECT_EQ(log.take().size(), 7u);
}

TEST_F(GetStrTest, TakesAnotherSpellingOfTheSameKind)
{
    table.add("hex", "%d", "0x%08lX");
    table.add("long", "%ld", "%I32i");
    table.add("large", "%lld", "%I64x");
    table.add("text", "%s", "%10.2ls|");
    table.add("narrow", "%S", "%hs");
    table.add("letter", "%d", "%c");
    table.add("real", "%f", "%.2le");
    table.load();
    EXPECT_STREQ(GetStr("hex", 255), L"0x000000FF");
    EXPECT_STREQ(GetStr("long", -5l), L"-5");
    EXPECT_STREQ(GetStr("large", 255ll), L"ff");
    EXPECT_STREQ(GetStr("text", L"abc"), L"        ab|");
    EXPECT_STREQ(GetStr("narrow", "abc"), L"abc");
    EXPECT_STREQ(GetStr("letter", 'A'), L"A");
    EXPECT_STREQ(GetStr("real", 1234.5), L"1.23e+003");
    EXPECT_EQ(log.take(), Messages{});
}

TEST_F(GetStrTest, LogsTwiceWhenTheBaseTextIsUnusableAsWell)
{
    table.add("both", "base %n", "text %s");
    table.load();
    int written = 5;
    EXPECT_TRUE(GetStr("both", &written).IsEmpty());
    EXPECT_EQ(written, 5);
    EXPECT_EQ(log.take(),
              (Messages{DoesNotMatch("both", "text %s", "base %n"), NotSatisfied(1180, "both", "base %n")}));
}

TEST_F(GetStrTest, LogsOnceWhenTheTextIsTheBaseText)
{
    table.add("same", "never %n", "never %n");
    table.add("untranslated", "wide %*d");
    table.add("bomb", "%999999999d");
    table.load();
    EXPECT_TRUE(GetStr("same").IsEmpty());
    EXPECT_EQ(log.take(), Messages{NotSatisfied(1187, "same", "never %n")});
    EXPECT_TRUE(GetStr("untranslated", 3, 4).IsEmpty());
    EXPECT_EQ(log.take(), Messages{NotSatisfied(1187, "untranslated", "wide %*d")});
    EXPECT_TRUE(GetStr("bomb", 1).IsEmpty());
    EXPECT_EQ(log.take(), Messages{NotSatisfied(1187, "bomb", "%999999999d")});
}

TEST_F(GetStrTest, ReadsTheContractUpToItsFirstUnusableConversion)
{
    table.add("prefix", "%d then %n", "nur %d");
    table.add("plain", "%q", "ohne");
    table.load();
    EXPECT_STREQ(GetStr("prefix", 3), L"nur 3");
    EXPECT_STREQ(GetStr("plain"), L"ohne");
    EXPECT_EQ(log.take(), Messages{});
}

TEST_F(GetStrTest, PrintsPercentSigns)
{
    table.add("percent", "%d %%", "%d%% fertig %%");
    table.load();
    EXPECT_STREQ(GetStr("percent", 50), L"50% fertig %");
}

TEST_F(GetStrTest, PrintsNullTextsAsSuch)
{
    table.add("null", "[%s|%S|%.2s]");
    table.load();
    EXPECT_STREQ(
        GetStr("null", static_cast<wchar_t*>(nullptr), static_cast<char*>(nullptr), static_cast<wchar_t*>(nullptr)),
        L"[(null)|(null)|(n]");
}

TEST_F(GetStrTest, LooksAtNoMoreOfATextThanThePrecisionAsksFor)
{
    table.add("bounded", "[%.3s|%.2S]");
    table.load();
    const wchar_t wide[3] = {L'a', L'b', L'c'};
    const char narrow[2] = {'d', 'e'};
    EXPECT_STREQ(GetStr("bounded", wide, narrow), L"[abc|de]");
}

TEST_F(GetStrTest, IgnoresSignFlagsOfUnsignedNumbers)
{
    table.add("unsigned", "[%+u|% x|%+5o]");
    table.load();
    EXPECT_STREQ(GetStr("unsigned", 7, 8, 9), L"[7|8|   11]");
}

TEST_F(GetStrTest, PrintsAddressesWithAllTheirDigits)
{
    table.add("address", "%p");
    table.load();
    const std::wstring digits = sizeof(void*) == 8 ? L"000000000000ABCD" : L"0000ABCD";
    EXPECT_EQ(std::wstring(GetStr("address", reinterpret_cast<void*>(0xabcd))), digits);
}

TEST_F(GetStrTest, TruncatesShortAndCharacterSizes)
{
    table.add("sizes", "%hd %hu %hhd %hhx");
    table.load();
    EXPECT_STREQ(GetStr("sizes", 0x18001, -1, 0x1ff, 0x1ff), L"-32767 65535 -1 ff");
}

TEST_F(GetStrTest, KnowsTheSpellingsThatOlderLibrariesDoNot)
{
    table.add("real", "%F %.1F");
    table.add("large", "%jd %jX");
    table.load();
    EXPECT_STREQ(GetStr("real", 1.5, -0.25), L"1.500000 -0.3");
    EXPECT_STREQ(GetStr("large", -(1ll << 40), 1ll << 40), L"-1099511627776 10000000000");
}

TEST_F(GetStrTest, PadsTextsWithZerosWhereTheFlagAsksForThem)
{
    table.add("padded", "%05s|%-05s|%03c");
    table.load();
    EXPECT_STREQ(GetStr("padded", L"ab", L"cd", L'e'), L"000ab|cd   |00e");
}

TEST_F(GetStrTest, KnowsTheSizesThatFollowThePointer)
{
    table.add("sizes", "%Iu %zu %td");
    table.load();
    const std::size_t large = static_cast<std::size_t>(-1);
    const std::wstring expected = std::to_wstring(large);
    EXPECT_EQ(GetStr("sizes", large, large, static_cast<std::ptrdiff_t>(-7)),
              (expected + L" " + expected + L" -7").c_str());
}

TEST_F(GetStrTest, PrintsTheLargestNumbersAtTheLargestWidthsAndPrecisions)
{
    table.add("large", "%1024.1024f|%1024d|%.1024d|%-1024s|");
    table.load();
    const CString text = GetStr("large", -DBL_MAX, 1, 1, L"x");
    EXPECT_EQ(text.GetLength(), 1 + 309 + 1 + 1024 + 1 + 3 * 1025);
    EXPECT_EQ(text.Left(10), L"-179769313");
}

TEST_F(GetStrTest, PrintsTextsOfAnyLengthAndCharactersBeyondTheBasicPlane)
{
    table.add("long", "[%s]");
    table.load();
    std::wstring text(100000, L'x');
    text += L"\U0001F600";
    EXPECT_EQ(GetStr("long", text.c_str()), (L"[" + text + L"]").c_str());
}

TEST_F(GetStrTest, HasNoLimitOnTheNumberOfConversions)
{
    table.add("many", "%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d");
    table.load();
    EXPECT_STREQ(GetStr("many", 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2, 3, 4),
                 L"123456789012345678901234");
}

TEST(TranslateStr, GivesTheTranslationOrAnEmptyText)
{
    TestStringTable table;
    table.add("plain", "Save", "Sichern");
    table.load();
    EXPECT_STREQ(TranslateStr(L"Save"), L"Sichern");
    EXPECT_TRUE(TranslateStr(L"a text that no table has").IsEmpty());
    EXPECT_TRUE(TranslateStr(nullptr).IsEmpty());
}

// A conversion of the given type with random flags, width and precision.
std::string RandomConversion(std::mt19937& random, const std::string& type)
{
    std::string conversion = "%";
    const bool isUnsigned = std::string("uxXo").find(type.back()) != std::string::npos;
    // Without a meaning for unsigned numbers; the C libraries do not agree on that.
    const std::string flags = isUnsigned ? "-#" : "-+ #";
    for (const char flag : flags)
        if (random() % 4 == 0) conversion += flag;
    const bool isText = type == "s" || type == "S" || type == "c";
    if (!isText && random() % 4 == 0) conversion += '0';
    if (random() % 2 == 0) conversion += std::to_string(1 + random() % 30);
    if (type != "c" && random() % 2 == 0) conversion += '.' + std::to_string(random() % 20);
    return conversion + type;
}

template <class Value>
void ExpectLikeThePlatform(const std::string& key, const std::string& format, Value value)
{
    wchar_t expected[512];
    ASSERT_GE(_snwprintf(expected, 512, Wide(format).c_str(), value), 0);
    EXPECT_EQ(std::wstring(GetStr(key.c_str(), value)), expected) << format;
}

// The compiler's C library: the platform's own writes out of bounds for some integer formats with '#' and a precision.
template <class Value>
void ExpectLikeTheStandard(const std::string& key, const std::string& format, Value value)
{
    char expected[512];
    ASSERT_GE(__mingw_snprintf(expected, 512, format.c_str(), value), 0);
    EXPECT_EQ(std::wstring(GetStr(key.c_str(), value)), Wide(expected)) << format;
}

TEST_F(GetStrTest, FormatsLikeTheCLibrary)
{
    constexpr int rounds = 200;
    const std::string types[] = {"d", "i", "u", "x", "X", "o", "I64d", "I64u", "I64x", "f",
                                 "e", "E", "g", "G", "s", "S", "c",    "hd",   "ld"};
    std::mt19937 random(7);
    std::vector<std::pair<std::string, std::string>> formats;
    for (const std::string& type : types) {
        for (int round = 0; round < rounds; ++round) {
            formats.emplace_back(type, "<" + RandomConversion(random, type) + ">");
            table.add("k" + std::to_string(formats.size() - 1), formats.back().second);
        }
    }
    table.load();
    for (std::size_t at = 0; at < formats.size(); ++at) {
        const auto& [type, format] = formats[at];
        const std::string key = "k" + std::to_string(at);
        const long long bits = static_cast<long long>((static_cast<unsigned long long>(random()) << 32) | random());
        if (type[0] == 'I')
            ExpectLikeTheStandard(key, format, bits >> (random() % 64));
        else if (type == "s")
            ExpectLikeThePlatform(key, format, L"a wide text");
        else if (type == "S")
            ExpectLikeThePlatform(key, format, "a narrow text");
        else if (type == "c")
            ExpectLikeThePlatform(key, format, static_cast<int>(L'A' + random() % 50));
        else if (std::string("feEgG").find(type) != std::string::npos)
            ExpectLikeThePlatform(key, format, static_cast<double>(bits >> (random() % 64)) / 1024);
        else
            ExpectLikeTheStandard(key, format, static_cast<int>(bits >> (random() % 32)));
    }
    EXPECT_EQ(log.take(), Messages{});
}

// The argument kind of one conversion as a letter, 0 when it is unusable.
char KindOf(const std::string& size, char type)
{
    const bool isPlain = size.empty();
    if (std::strchr("diuoxX", type)) {
        if (size == "w") return 0;
        if (size == "ll" || size == "I64" || size == "j") return 'L';
        return (size == "I" || size == "z" || size == "t") && sizeof(void*) == 8 ? 'L' : 'i';
    }
    if (std::strchr("eEfFgGaA", type)) return isPlain || size == "l" ? 'f' : 0;
    if (type == 'p') return isPlain ? 'p' : 0;
    if (!isPlain && size != "h" && size != "l" && size != "w") return 0;
    if (type == 'c' || type == 'C') return 'i';
    return size == "h" || (isPlain && type == 'S') ? 'N' : 'W';
}

// The argument kinds of a whole text, read by a regular expression; nothing when it is unusable.
std::optional<std::string> KindsOf(const std::string& text)
{
    static const std::regex conversion(
        "%[-+ #0]*([0-9]*)(?:\\.([0-9]*))?(hh|h|ll|l|w|j|z|t|I64|I32|I)?([diuoxXeEfFgGaAsScCp])");
    std::string kinds;
    for (auto at = text.begin(); at != text.end();) {
        std::smatch match;
        if (*at != '%' || (at + 1 != text.end() && at[1] == '%')) {
            at += *at == '%' ? 2 : 1;
            continue;
        }
        if (!std::regex_search(at, text.end(), match, conversion, std::regex_constants::match_continuous))
            return std::nullopt;
        const char kind = KindOf(match.str(3), match.str(4)[0]);
        if (std::atof(match.str(1).c_str()) > 1024 || std::atof(match.str(2).c_str()) > 1024 || kind == 0)
            return std::nullopt;
        kinds += kind;
        at = match[0].second;
    }
    return kinds;
}

TEST_F(GetStrTest, TakesOfGarbledTranslationsThoseThatKeepToTheContract)
{
    constexpr int count = 8000;
    const std::string base = "[%d|%s|%I64d|%f|%S]";
    std::mt19937 random(99);
    std::vector<std::string> texts;
    for (int at = 0; at < count; ++at) {
        const std::string alphabet = "%%%%%dddsssSfnxlIhw64*$.0-+# 19zLpc|";
        std::string text = "[";
        for (auto left = 1 + random() % 14; left > 0; --left)
            text += alphabet[random() % alphabet.size()];
        texts.push_back(text + "]");
        table.add("k" + std::to_string(at), base, texts.back().c_str());
    }
    table.load();
    int formatted = 0;
    for (int at = 0; at < count; ++at) {
        const std::string key = "k" + std::to_string(at);
        const std::string& text = texts[static_cast<std::size_t>(at)];
        const std::wstring result(GetStr(key.c_str(), 11, L"wide", 1ll << 40, 2.5, "narrow"));
        const std::optional<std::string> kinds = KindsOf(text);
        if (kinds && std::string("iWLfN").starts_with(*kinds)) {
            ++formatted;
            EXPECT_EQ(log.take(), Messages{}) << text;
            EXPECT_TRUE(result.starts_with(L'[') && result.ends_with(L']')) << text;
            continue;
        }
        EXPECT_EQ(result, L"[11|wide|1099511627776|2.500000|narrow]") << text;
        EXPECT_EQ(log.take(), Messages{DoesNotMatch(key, text, base)});
    }
    EXPECT_GT(formatted, count / 50);
    EXPECT_LT(formatted, count * 49 / 50);
}

} // namespace
