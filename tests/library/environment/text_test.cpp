// Checks that the texts of the version resource are those of version_strings.rc.
#include <base/GdiHandles.h>
#include <gtest/gtest.h>
#include <Utils_Statics/utilsExam.h>

#include <afxwin.h>

#include <climits>
#include <cmath>
#include <optional>
#include <random>

namespace {

TEST(GetStringTableEntry, ReadsTheProgramsVersionResource)
{
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L"ProductVersion"), L"3.1.4 build 15");
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L"Umlauts"), L"Gr\u00f6\u00dfe \u4e2d");
}

TEST(GetStringTableEntry, ReadsTheFirstTranslation)
{
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L"ProductName"), L"Text test");
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L"OnlyGerman"), L"");
}

TEST(GetStringTableEntry, IsEmptyForWhatIsNotThere)
{
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L"NoSuchName"), L"");
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L"Empty"), L"");
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L""), L"");
    EXPECT_STREQ(utilsExam::GetStringTableEntry(nullptr), L"");
    EXPECT_STREQ(utilsExam::GetStringTableEntry(std::wstring(5000, L'x').c_str()), L"");
    EXPECT_STREQ(utilsExam::GetStringTableEntry(L"%s%n"), L"");
}

TEST(ProductTexts, AreTheResourcesValues)
{
    for (int times = 0; times < 2; ++times) // read at first, kept later
    {
        EXPECT_STREQ(utilsExam::GetProductVersion(), L"3.1.4 build 15");
        EXPECT_STREQ(utilsExam::GetProductName(), L"Text test");
        EXPECT_STREQ(utilsExam::GetProductPublisher(), L"Test Publisher");
        EXPECT_STREQ(utilsExam::GetBuildDate(), L"2024-02-29");
    }
}

TEST(ProductTexts, AreCopiesOfWhatIsKept)
{
    CString copy = utilsExam::GetProductName();
    copy.MakeUpper();
    EXPECT_STREQ(utilsExam::GetProductName(), L"Text test");
}

TEST(StlListToMfcList, AppendsInOrder)
{
    CStringArray texts;
    texts.Add(L"first");
    utilsExam::StlListToMfcList({L"a", L"", L"\U0001F600"}, texts);
    ASSERT_EQ(texts.GetSize(), 4);
    EXPECT_STREQ(texts[0], L"first");
    EXPECT_STREQ(texts[1], L"a");
    EXPECT_STREQ(texts[2], L"");
    EXPECT_STREQ(texts[3], L"\U0001F600");
    utilsExam::StlListToMfcList({}, texts);
    EXPECT_EQ(texts.GetSize(), 4);
}

TEST(Ui64ToDouble, KeepsTheWholeUnsignedRange)
{
    EXPECT_EQ(utilsExam::ui64ToDouble(0), 0.0);
    EXPECT_EQ(utilsExam::ui64ToDouble(1), 1.0);
    EXPECT_EQ(utilsExam::ui64ToDouble((1ull << 53) - 1), 9007199254740991.0);
    EXPECT_EQ(utilsExam::ui64ToDouble(1ull << 63), std::ldexp(1.0, 63));
    EXPECT_EQ(utilsExam::ui64ToDouble(ULLONG_MAX), std::ldexp(1.0, 64));
}

// A memory device context with a font of 20 pixels.
class WrapStrTest : public testing::Test
{
protected:
    WrapStrTest()
    {
        dc.CreateCompatibleDC(nullptr);
        font.reset(CreateFontW(-20, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, ANSI_CHARSET, 0, 0,
                               NONANTIALIASED_QUALITY, 0, L"Arial"));
        selected.emplace(dc.m_hDC, font.get());
    }

    int Width(const std::wstring& text)
    {
        RECT bounds = {};
        ::DrawTextW(dc.m_hDC, text.c_str(), static_cast<int>(text.size()), &bounds, DT_CALCRECT);
        return bounds.right - bounds.left;
    }

    int PlainWrap(std::wstring& text, int maximum);

    // Expects so many lines of a text at a width, and that the text is this one then.
    void Expect(const wchar_t* text, int width, int lines, const wchar_t* result)
    {
        CString asked(text);
        EXPECT_EQ(utilsExam::WrapStr(&dc, asked, width), lines);
        EXPECT_STREQ(asked, result);
    }

    CDC dc;
    base::Font font;
    std::optional<base::Selection> selected;
};

TEST_F(WrapStrTest, IsZeroWithoutTextOrDeviceContext)
{
    CString empty;
    EXPECT_EQ(utilsExam::WrapStr(&dc, empty, 100), 0);
    CString text(L"aa bbbb");
    EXPECT_EQ(utilsExam::WrapStr(nullptr, text, 1), 0);
    EXPECT_STREQ(text, L"aa bbbb");
}

TEST_F(WrapStrTest, LeavesATextThatFits)
{
    Expect(L"aa bbbb c", Width(L"aa bbbb c") + 1, 1, L"aa bbbb c");
}

TEST_F(WrapStrTest, ReplacesATextOfExactlyTheWidthByItsLongestWord)
{
    Expect(L"aa bbbb c", Width(L"aa bbbb c"), 1, L"bbbb");
}

TEST_F(WrapStrTest, CountsOneLineForEachWordThatFillsIt)
{
    Expect(L"aa bbbb c", Width(L"bbbb"), 3, L"bbbb");
}

TEST_F(WrapStrTest, LeavesASingleWordHoweverWide)
{
    Expect(L"abcdefghijklmnop", 3, 1, L"abcdefghijklmnop");
}

TEST_F(WrapStrTest, CountsALineMoreForAFirstWordThatIsTooWide)
{
    Expect(L"abcdef g", Width(L"abc"), 3, L"abcdef");
}

TEST_F(WrapStrTest, TakesTheFirstOfEquallyLongWords)
{
    CString text(L"ab cd ef");
    utilsExam::WrapStr(&dc, text, 1);
    EXPECT_STREQ(text, L"ab");
}

TEST_F(WrapStrTest, SkipsLeadingDelimitersButMeasuresThem)
{
    Expect(L"    aa b", Width(L"    aa") - 1, 2, L"aa");
}

TEST_F(WrapStrTest, GivesOneLineForDelimitersAlone)
{
    Expect(L"      ", 1, 1, L"");
}

TEST_F(WrapStrTest, AppendsTheWordsAfterALineFeedWithoutTheirDelimiter)
{
    // After "aa" the position moves to the space behind "bb", so that "bb" is not found.
    CString text(L"aa\nbb cc");
    EXPECT_EQ(utilsExam::WrapStr(&dc, text, Width(L"aabb")), 2);
    CString narrower(L"aa\nbb cc");
    EXPECT_EQ(utilsExam::WrapStr(&dc, narrower, Width(L"aabb") - 1),
              Width(L"bb cc") > Width(L"aabb") - 1 ? 3 : 2);
}

// The steps one by one with the framework's own string operations.
int WrapStrTest::PlainWrap(std::wstring& text, int maximum)
{
    if (Width(text) < maximum) return 1;
    const CString copy(text.c_str());
    CString line;
    CString longest;
    int count = 1;
    int position = 0;
    int token = 0;
    for (CString word = copy.Tokenize(L" \n", token); token != -1;
         word = copy.Tokenize(L" \n", token)) {
        if (word == copy) return 1;
        const int found = copy.Find(word, position);
        if (found >= 0) {
            line += copy.Mid(position, found - position);
            position = copy.Find(L' ', found + word.GetLength());
            if (position < 0) position = copy.Find(L'\n', found + word.GetLength());
            if (position < 0) position = copy.GetLength();
        }
        line += word;
        if (Width(line.GetString()) > maximum) {
            ++count;
            line = word;
        }
        if (word.GetLength() > longest.GetLength()) longest = word;
    }
    text = longest.GetString();
    return count;
}

TEST_F(WrapStrTest, AgreesWithThePlainStepsOnRandomTexts)
{
    std::mt19937 random(12);
    for (int round = 0; round < 1500; ++round) {
        std::wstring text(1 + random() % 25, L'a');
        for (wchar_t& character : text)
            character = L"ab&m \n i"[random() % 8];
        const int maximum = static_cast<int>(random() % 150);
        CString asked(text.c_str());
        const int lines = utilsExam::WrapStr(&dc, asked, maximum);
        std::wstring expected = text;
        EXPECT_EQ(lines, PlainWrap(expected, maximum))
            << testing::PrintToString(text) << " at " << maximum;
        EXPECT_EQ(asked, expected.c_str()) << testing::PrintToString(text) << " at " << maximum;
    }
}

} // namespace
