// Translations that break the base text's conversions: which are used, and what is logged.
#include "GetStrFixture.h"

using test_support::LogCapture;

namespace {

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
