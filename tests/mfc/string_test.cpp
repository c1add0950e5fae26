#include <gtest/gtest.h>

#include <atlstr.h>

#include <cstdarg>
#include <random>
#include <string>

namespace {

constinit CString s_constantInitialised; // a static text needs no run-time construction

CString Formatted(LPCWSTR format, ...)
{
    CString text;
    va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    return text;
}

} // namespace

TEST(CString, StartsEmptyAndTerminated)
{
    EXPECT_TRUE(s_constantInitialised.IsEmpty());
    EXPECT_EQ(s_constantInitialised.GetLength(), 0);
    EXPECT_STREQ(s_constantInitialised.GetString(), L"");
}

TEST(CString, TreatsNullAsEmpty)
{
    const CString text(static_cast<LPCWSTR>(nullptr));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text, static_cast<LPCWSTR>(nullptr));
    EXPECT_EQ(CString(L"a") + static_cast<LPCWSTR>(nullptr), L"a");
    EXPECT_EQ(CString(L"a").Find(static_cast<LPCWSTR>(nullptr)), 0);
    EXPECT_EQ(CString(L"a").CompareNoCase(nullptr), 1);
}

TEST(CString, KeepsNullCharactersOfCountedTexts)
{
    const CString text(L"a\0b", 3);
    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_EQ(text[2], L'b');
    EXPECT_NE(text, CString(L"a"));
}

TEST(CString, ConvertsNarrowTexts)
{
    EXPECT_EQ(CString("127.0.0.1"), L"127.0.0.1");
    EXPECT_TRUE(CString("").IsEmpty());
    EXPECT_TRUE(CString(static_cast<LPCSTR>(nullptr)).IsEmpty());
}

TEST(CString, RepeatsACharacter)
{
    EXPECT_EQ(CString(L'x', 3), L"xxx");
    EXPECT_TRUE(CString(L'x', -1).IsEmpty());
}

TEST(CString, CopiesAreIndependent)
{
    CString a = L"one";
    CString b = a;
    b.SetAt(0, L'O');
    EXPECT_EQ(a, L"one");
    EXPECT_EQ(b, L"One");
}

TEST(CString, AssignsAndAppendsPartsOfItself)
{
    CString text = L"0123456789abcdefghij";
    text = text.GetString() + 10;
    EXPECT_EQ(text, L"abcdefghij");
    text += text;
    EXPECT_EQ(text, L"abcdefghijabcdefghij");
    text += text.GetString() + 18;
    EXPECT_EQ(text, L"abcdefghijabcdefghijij");
    text.Insert(2, text.GetString() + 20);
    EXPECT_EQ(text, L"abijcdefghijabcdefghijij");
}

TEST(CString, JoinsTextsAndCharacters)
{
    const CString a = L"a";
    EXPECT_EQ(a + L"b" + CString(L"c") + L'd', L"abcd");
    EXPECT_EQ(L"x" + a, L"xa");
    EXPECT_EQ(L'x' + a, L"xa");
}

TEST(CString, ComparesByCodeUnits)
{
    const CString a = L"a";
    EXPECT_TRUE(a == L"a" && L"a" == a && a != L"A");
    EXPECT_TRUE(a < L"b" && L"A" < a && a <= CString(L"a") && CString(L"aa") > a);
    EXPECT_LT(CString(L"abc").Compare(L"abd"), 0);
    EXPECT_EQ(CString(L"abc").Compare(L"abc"), 0);
    EXPECT_GT(CString(L"abc").Compare(L"ab"), 0);
    EXPECT_LT(CString(L"\x7fff").Compare(L"\xffff"), 0); // above the sign bit as well
}

TEST(CString, ComparesWithoutCase)
{
    EXPECT_EQ(CString(L"Icon.ICO").CompareNoCase(L"icon.ico"), 0);
    EXPECT_EQ(CString(L"\xc4").CompareNoCase(L"\xe4"), 0);
    EXPECT_LT(CString(L"a").CompareNoCase(L"B"), 0);
    EXPECT_GT(CString(L"b").CompareNoCase(L"A"), 0);
    EXPECT_EQ(CString().CompareNoCase(L""), 0);
}

TEST(CString, CutsPartsToFit)
{
    const CString text = L"abcdef";
    EXPECT_EQ(text.Mid(2), L"cdef");
    EXPECT_EQ(text.Mid(2, 2), L"cd");
    EXPECT_EQ(text.Mid(-3, 2), L"ab");
    EXPECT_EQ(text.Mid(5, 100), L"f");
    EXPECT_EQ(text.Mid(6), L"");
    EXPECT_EQ(text.Mid(100, 1), L"");
    EXPECT_EQ(text.Mid(1, -1), L"");
    EXPECT_EQ(text.Mid(INT_MAX, INT_MAX), L"");
    EXPECT_EQ(text.Left(2), L"ab");
    EXPECT_EQ(text.Left(-2), L"");
    EXPECT_EQ(text.Right(2), L"ef");
    EXPECT_EQ(text.Right(100), L"abcdef");
    EXPECT_EQ(text.Right(-1), L"");
}

TEST(CString, Searches)
{
    const CString text = L"a\\b\\c";
    EXPECT_EQ(text.Find(L'\\'), 1);
    EXPECT_EQ(text.Find(L'\\', 2), 3);
    EXPECT_EQ(text.Find(L'\\', 4), -1);
    EXPECT_EQ(text.Find(L'\\', -1), -1);
    EXPECT_EQ(text.Find(L'\\', 100), -1);
    EXPECT_EQ(text.Find(L"b\\"), 2);
    EXPECT_EQ(text.Find(L"", 5), 5);
    EXPECT_EQ(text.Find(L"", 6), -1);
    EXPECT_EQ(text.ReverseFind(L'\\'), 3);
    EXPECT_EQ(text.ReverseFind(L'x'), -1);
    EXPECT_EQ(text.FindOneOf(L"xc\\"), 1);
    EXPECT_EQ(text.FindOneOf(L""), -1);
}

TEST(CString, Spans)
{
    EXPECT_EQ(CString(L"aabbc").SpanIncluding(L"ab"), L"aabb");
    EXPECT_EQ(CString(L"aabbc").SpanIncluding(L"x"), L"");
    EXPECT_EQ(CString(L"aabbc").SpanExcluding(L"c"), L"aabb");
    EXPECT_EQ(CString(L"aabbc").SpanExcluding(L"x"), L"aabbc");
}

TEST(CString, TokenizesAndTreatsRunsOfDelimitersAsOne)
{
    const CString text = L" \naa  bbbb\n c ";
    int position = 0;
    EXPECT_EQ(text.Tokenize(L" \n", position), L"aa");
    EXPECT_EQ(text.Tokenize(L" \n", position), L"bbbb");
    EXPECT_EQ(text.Tokenize(L" \n", position), L"c");
    EXPECT_EQ(text.Tokenize(L" \n", position), L"");
    EXPECT_EQ(position, -1);
    EXPECT_EQ(text.Tokenize(L" \n", position), L"");
    EXPECT_EQ(position, -1);
}

TEST(CString, TokenizesTheLastPieceUpToTheEnd)
{
    const CString text = L"a,b";
    int position = 0;
    EXPECT_EQ(text.Tokenize(L",", position), L"a");
    EXPECT_EQ(position, 2);
    EXPECT_EQ(text.Tokenize(L",", position), L"b");
    EXPECT_EQ(text.Tokenize(L",", position), L"");
    EXPECT_EQ(position, -1);
}

TEST(CString, Trims)
{
    EXPECT_EQ(CString(L" \t\r\n a b \n").Trim(), L"a b");
    EXPECT_EQ(CString(L"  ").Trim(), L"");
    EXPECT_EQ(CString(L"\v\f\x00A0\x2003 a\x3000 b\x2028").Trim(), L"a\x3000 b");
    EXPECT_EQ(CString(L" a ").TrimLeft(), L"a ");
    EXPECT_EQ(CString(L" a ").TrimRight(), L" a");
    EXPECT_EQ(CString(L"xyaxy").Trim(L"xy"), L"a");
    EXPECT_EQ(CString(L"path\\\\").TrimRight(L'\\'), L"path");
    EXPECT_EQ(CString(L"\\path").TrimLeft(L'\\'), L"path");
}

TEST(CString, ReplacesAndCounts)
{
    CString text = L"a/b/c";
    EXPECT_EQ(text.Replace(L'/', L'\\'), 2);
    EXPECT_EQ(text, L"a\\b\\c");
    EXPECT_EQ(text.Replace(L'a', L'a'), 0);
    EXPECT_EQ(text.Replace(L"\\", L"::"), 2);
    EXPECT_EQ(text, L"a::b::c");
    EXPECT_EQ(text.Replace(L"::", nullptr), 2);
    EXPECT_EQ(text, L"abc");
    EXPECT_EQ(text.Replace(L"", L"x"), 0);
    text = L"aaa";
    EXPECT_EQ(text.Replace(L"aa", L"a"), 1); // the inserted text is not searched again
    EXPECT_EQ(text, L"aa");
}

TEST(CString, InsertsDeletesAndRemoves)
{
    CString text = L"bd";
    EXPECT_EQ(text.Insert(0, L'a'), 3);
    EXPECT_EQ(text.Insert(2, L"c"), 4);
    EXPECT_EQ(text.Insert(100, L"e"), 5);
    EXPECT_EQ(text, L"abcde");
    EXPECT_EQ(text.Delete(1, 2), 3);
    EXPECT_EQ(text.Delete(2, 100), 2);
    EXPECT_EQ(text.Delete(5), 2);
    EXPECT_EQ(text, L"ad");
    text = L"banana";
    EXPECT_EQ(text.Remove(L'a'), 3);
    EXPECT_EQ(text, L"bnn");
}

TEST(CString, ChangesCaseAndOrder)
{
    EXPECT_EQ(CString(L"ab\xe4Z").MakeUpper(), L"AB\xc4Z");
    EXPECT_EQ(CString(L"AB\xc4z").MakeLower(), L"ab\xe4z");
    EXPECT_EQ(CString(L"abc").MakeReverse(), L"cba");
    EXPECT_EQ(CString().MakeUpper(), L"");
}

TEST(CString, IgnoresIndexesOutsideOfTheText)
{
    CString text = L"ab";
    text.SetAt(2, L'x');
    text.SetAt(-1, L'x');
    EXPECT_EQ(text, L"ab");
    EXPECT_EQ(text[2], L'\0');
    EXPECT_EQ(text.GetAt(-1), L'\0');
    text.Truncate(5);
    EXPECT_EQ(text, L"ab");
    text.Truncate(1);
    EXPECT_EQ(text, L"a");
}

TEST(CString, LendsItsBuffer)
{
    CString text = L"abc";
    wchar_t* const buffer = text.GetBuffer(MAX_PATH);
    EXPECT_STREQ(buffer, L"abc");
    wcscpy(buffer, L"C:\\Exam");
    text.ReleaseBuffer();
    EXPECT_EQ(text.GetLength(), 7);
    text.GetBuffer(20)[2] = L'x';
    text.ReleaseBuffer(3);
    EXPECT_EQ(text, L"C:x");
    text.GetBufferSetLength(2);
    text.ReleaseBuffer();
    EXPECT_EQ(text, L"C:");
    text.GetBuffer(10);
    text.ReleaseBuffer(0);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CString, FormatsWithWideSemantics)
{
    EXPECT_EQ(Formatted(L"%s|%S|%hs|%ls|%c", L"wide", "narrow", "short", L"long", L'\x20ac'),
              L"wide|narrow|short|long|\x20ac");
    EXPECT_EQ(Formatted(L"%d %05d %x %#x %u", -1, 42, 255, 255, 7u), L"-1 00042 ff 0xff 7");
    EXPECT_EQ(Formatted(L"%I64d %I64x", 1234567890123ll, 0xfedcba9876543210ull),
              L"1234567890123 fedcba9876543210");
    EXPECT_EQ(Formatted(L"%.2f %g", 3.14159, 0.5), L"3.14 0.5");
    EXPECT_EQ(Formatted(L"100%%"), L"100%");
    EXPECT_EQ(Formatted(L"%-5s|%5s|%.2s", L"a", L"b", L"cde"), L"a    |    b|cd");
    EXPECT_EQ(Formatted(L""), L"");
    EXPECT_EQ(Formatted(nullptr), L"");
}

TEST(CString, FormatsItself)
{
    CString text = L"x";
    text.Format(L"%s-%s", text.GetString(), text.GetString());
    EXPECT_EQ(text, L"x-x");
    text.AppendFormat(L"%s%d", text.GetString(), 1);
    EXPECT_EQ(text, L"x-xx-x1");
}

TEST(CString, FormatsLongTexts)
{
    const std::wstring longText(100000, L'a');
    const CString text = Formatted(L"<%s>", longText.c_str());
    EXPECT_EQ(text.GetLength(), 100002);
    EXPECT_EQ(text[100001], L'>');
}

TEST(CString, ReportsAMissingStringResource)
{
    CString text = L"before";
    EXPECT_FALSE(text.LoadString(54321));
    EXPECT_EQ(text, L"before");
}

// Compares random operations with std::wstring as the reference.
TEST(CString, AgreesWithAReferenceOnRandomTexts)
{
    std::mt19937 random(7);
    const auto next = [&](int below) {
        return static_cast<int>(random() % static_cast<unsigned>(below));
    };
    const auto word = [&] {
        std::wstring text;
        for (int i = next(8); i > 0; --i)
            text += static_cast<wchar_t>(L'a' + next(3));
        return text;
    };
    for (int round = 0; round < 20000; ++round) {
        const std::wstring reference = word() + word();
        const std::wstring piece = word();
        const CString text(reference.c_str());
        const int start = next(10);
        const size_t from = static_cast<size_t>(start);
        const size_t hit = reference.find(piece, from);
        ASSERT_EQ(text.Find(piece.c_str(), start),
                  hit == std::wstring::npos ? -1 : static_cast<int>(hit));
        const std::wstring part =
            from < reference.size() ? reference.substr(from, 3) : std::wstring();
        ASSERT_EQ(text.Mid(start, 3), part.c_str());
        ASSERT_EQ(text.Compare(piece.c_str()) < 0, reference < piece);
        if (piece.empty()) continue;
        std::wstring replaced;
        size_t done = 0;
        for (size_t at; (at = reference.find(piece, done)) != std::wstring::npos;
             done = at + piece.size())
            replaced += reference.substr(done, at - done) + L"-";
        replaced += reference.substr(done);
        CString changed = text;
        changed.Replace(piece.c_str(), L"-");
        ASSERT_EQ(changed, replaced.c_str());
    }
}
