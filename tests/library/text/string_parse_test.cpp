#include <gtest/gtest.h>
#include <Utils_Statics/StringParse.h>

#include <climits>
#include <random>
#include <string>
#include <vector>

namespace {

std::vector<std::wstring> AllWords(const CString& text, wchar_t sep)
{
    CStringArray words;
    words.Add(L"left from before");
    StringParse::GetAllWords(text, words, sep);
    std::vector<std::wstring> result;
    for (INT_PTR at = 0; at < words.GetSize(); ++at)
        result.emplace_back(words[at].GetString());
    return result;
}

using Words = std::vector<std::wstring>;

TEST(GetAllWords, KeepsEmptyWordsBetweenAndAfterSeparators)
{
    EXPECT_EQ(AllWords(L"a,,b,", L','), (Words{L"a", L"", L"b", L""}));
    EXPECT_EQ(AllWords(L",", L','), (Words{L"", L""}));
    EXPECT_EQ(AllWords(L",a", L','), (Words{L"", L"a"}));
}

TEST(GetAllWords, GivesNoWordsForAnEmptyText)
{
    EXPECT_EQ(AllWords(L"", L','), Words{});
}

TEST(GetAllWords, GivesTheWholeTextWithoutSeparator)
{
    EXPECT_EQ(AllWords(L"a b;c", L','), Words{L"a b;c"});
}

TEST(GetAllWords, SplitsATextThatIsAnElementOfTheArrayItFills)
{
    CStringArray words;
    words.Add(L"x,y");
    StringParse::GetAllWords(words[0], words, L',');
    ASSERT_EQ(words.GetSize(), 2);
    EXPECT_STREQ(words[1], L"y");
}

TEST(GetAllWords, TakesHalfOfASurrogatePairAsTheCharacterThatItIs)
{
    EXPECT_EQ(AllWords(L"a\U0001F600b", L'\xD83D'), (Words{L"a", L"\xDE00"
                                                                 L"b"}));
}

TEST(GetWordCount, IsTheNumberOfSeparatorsPlusOne)
{
    EXPECT_EQ(StringParse::GetWordCount(L"a,,b,", L','), 4);
    EXPECT_EQ(StringParse::GetWordCount(L"abc", L','), 1);
    EXPECT_EQ(StringParse::GetWordCount(L"", L','), 1);
}

TEST(GetWordByPos, FindsWordsByTheirZeroBasedPosition)
{
    EXPECT_STREQ(StringParse::GetWordByPos(L"a,b", 0, L','), L"a");
    EXPECT_STREQ(StringParse::GetWordByPos(L"a,b", 1, L','), L"b");
    EXPECT_STREQ(StringParse::GetWordByPos(L"a,,b", 1, L','), L"");
    EXPECT_STREQ(StringParse::GetWordByPos(L"a,,b", 2, L','), L"b");
}

TEST(GetWordByPos, GivesAnEmptyTextOutsideOfTheWords)
{
    for (const int pos : {2, 3, INT_MAX, -1, INT_MIN})
        EXPECT_STREQ(StringParse::GetWordByPos(L"a,b", pos, L','), L"") << pos;
    EXPECT_STREQ(StringParse::GetWordByPos(L"", 0, L','), L"");
}

TEST(GetFirstWord, EndsBeforeTheFirstSeparator)
{
    EXPECT_STREQ(StringParse::GetFirstWord(L"ab,c,d", L','), L"ab");
    EXPECT_STREQ(StringParse::GetFirstWord(L",c", L','), L"");
    EXPECT_STREQ(StringParse::GetFirstWord(L"whole text", L','), L"whole text");
    EXPECT_STREQ(StringParse::GetFirstWord(L"", L','), L"");
}

// Splits character by character, by the definition of words.
Words PlainWords(const std::wstring& text, wchar_t sep)
{
    Words words;
    std::wstring word;
    for (const wchar_t character : text) {
        if (character != sep) {
            word += character;
            continue;
        }
        words.push_back(word);
        word.clear();
    }
    if (!text.empty()) words.push_back(word);
    return words;
}

TEST(StringParse, AgreesWithThePlainDefinitionOnRandomTexts)
{
    std::mt19937 random(20);
    for (int round = 0; round < 5000; ++round) {
        std::wstring text(random() % 12, L'a');
        for (wchar_t& character : text)
            character = L"ab,;\U0001F600"[random() % 6];
        const Words expected = PlainWords(text, L',');
        const CString asked(text.c_str());
        ASSERT_EQ(AllWords(asked, L','), expected);
        ASSERT_EQ(StringParse::GetWordCount(asked, L','),
                  static_cast<long>(text.empty() ? 1 : expected.size()));
        const int pos = static_cast<int>(random() % 14) - 1;
        const bool inside = pos >= 0 && static_cast<std::size_t>(pos) < expected.size();
        ASSERT_EQ(StringParse::GetWordByPos(asked, pos, L','),
                  inside ? expected[static_cast<std::size_t>(pos)].c_str() : L"");
        ASSERT_EQ(StringParse::GetFirstWord(asked, L','),
                  expected.empty() ? L"" : expected[0].c_str());
    }
}

} // namespace
