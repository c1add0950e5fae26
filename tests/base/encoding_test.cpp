#include <base/Encoding.h>
#include <gtest/gtest.h>

#include <random>

namespace {

constexpr UINT windows1252 = 1252;

// A text of whole characters, including some beyond the first plane.
std::wstring RandomText(std::mt19937& random)
{
    std::uniform_int_distribution<unsigned> codePoint(1, 0x10FFFF);
    std::wstring text;
    for (int i = 0; i < 50; ++i) {
        const unsigned c = codePoint(random);
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        if (c > 0xFFFF) text += static_cast<wchar_t>(0xD7C0 + (c >> 10));
        text += static_cast<wchar_t>(c > 0xFFFF ? 0xDC00 + (c & 0x3FF) : c);
    }
    return text;
}

} // namespace

TEST(Encoding, NothingStaysNothing)
{
    EXPECT_EQ(base::WideFromBytes(CP_UTF8, "", MB_ERR_INVALID_CHARS), std::wstring());
    EXPECT_EQ(base::WideFromUtf8(""), L"");
    EXPECT_EQ(base::Utf8FromWide(L""), "");
    EXPECT_EQ(base::BytesFromWide(windows1252, L""), "");
}

TEST(Encoding, Utf8HasOneToFourBytesACharacter)
{
    const std::wstring wide = L"a\u00E9\u20AC\U0001F600";
    const std::string utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(base::WideFromUtf8(utf8), wide);
    EXPECT_EQ(base::Utf8FromWide(wide), utf8);
}

TEST(Encoding, NullCharactersAreCharacters)
{
    const std::wstring wide(L"a\0b", 3);
    const std::string utf8("a\0b", 3);
    EXPECT_EQ(base::WideFromUtf8(utf8), wide);
    EXPECT_EQ(base::Utf8FromWide(wide), utf8);
}

TEST(Encoding, InvalidUtf8IsRefusedWhereThatIsAsked)
{
    for (const char* bytes : {"\xFF", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\x80", "\xF8\x88"})
        EXPECT_EQ(base::WideFromBytes(CP_UTF8, bytes, MB_ERR_INVALID_CHARS), std::nullopt) << bytes;
}

TEST(Encoding, InvalidUtf8BecomesReplacementCharactersElsewhere)
{
    EXPECT_EQ(base::WideFromUtf8("a\xFFz"), L"a\uFFFDz");
    const std::wstring cut = base::WideFromUtf8("a\xC3");
    EXPECT_EQ(cut, L"a\uFFFD");
}

TEST(Encoding, LoneSurrogatesBecomeReplacementCharacters)
{
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(base::Utf8FromWide(std::wstring{L'a', 0xD800, L'z'}), "a" + replacement + "z");
    EXPECT_EQ(base::Utf8FromWide(std::wstring{0xDC00}), replacement);
    EXPECT_EQ(base::Utf8FromWide(std::wstring{0xD800}), replacement) << "at the end";
}

TEST(Encoding, CodePagesReadAndWriteTheirCharacters)
{
    EXPECT_EQ(base::WideFromBytes(windows1252, "\x80\xE4"), L"\u20AC\u00E4");
    EXPECT_EQ(base::BytesFromWide(windows1252, L"\u20AC\u00E4"), "\x80\xE4");
    EXPECT_EQ(base::BytesFromWide(windows1252, L"\u4E00"), "?") << "the code page lacks it";
}

TEST(Encoding, TextsThatAreTooLongGiveNothing)
{
    // The characters themselves are never read.
    constexpr std::size_t tooLong = std::size_t{INT_MAX} + 1;
    EXPECT_EQ(base::WideFromBytes(CP_UTF8, std::string_view("a", tooLong)), std::nullopt);
    EXPECT_EQ(base::WideFromUtf8(std::string_view("a", tooLong)), L"");
    EXPECT_EQ(base::Utf8FromWide(std::wstring_view(L"a", tooLong)), "");
}

TEST(Encoding, AnyTextComesBackTheSame)
{
    std::mt19937 random(20);
    for (int i = 0; i < 500; ++i) {
        const std::wstring text = RandomText(random);
        EXPECT_EQ(base::WideFromUtf8(base::Utf8FromWide(text)), text);
    }
}
