#include <base/Encoding.h>

#include <cstdint>

namespace base {

namespace {

constexpr char32_t replacement = 0xFFFD;

// The characters of Windows-1252 from 0x80 to 0x9F; its other bytes are those of Latin 1. The five
// bytes that it leaves open stand for themselves.
constexpr char16_t upper[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

std::wstring FromWindows1252(std::string_view bytes)
{
    std::wstring text;
    for (const char each : bytes) {
        const auto byte = static_cast<std::uint8_t>(each);
        const bool isUpper = byte >= 0x80 && byte < 0xA0;
        text += static_cast<wchar_t>(isUpper ? upper[byte - 0x80] : byte);
    }
    return text;
}

void AppendUtf16(std::wstring& text, char32_t character)
{
    if (character < 0x10000) {
        text += static_cast<wchar_t>(character);
        return;
    }
    text += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
    text += static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
}

// The number of bytes that follow a first one; -1 for a byte that begins no character.
int FollowersOf(std::uint8_t first)
{
    if (first < 0x80) return 0;
    if (first >= 0xC2 && first < 0xE0) return 1;
    if (first >= 0xE0 && first < 0xF0) return 2;
    return first >= 0xF0 && first < 0xF5 ? 3 : -1;
}

// Takes one character off `bytes`; nothing, with one byte taken, when they begin with none.
std::optional<char32_t> TakeUtf8(std::string_view& bytes)
{
    const auto first = static_cast<std::uint8_t>(bytes[0]);
    const int followers = FollowersOf(first);
    bytes.remove_prefix(1);
    if (followers < 0 || bytes.size() < static_cast<std::size_t>(followers)) return std::nullopt;
    if (followers == 0) return first;
    char32_t character = first & (0x3Fu >> followers);
    for (int i = 0; i < followers; ++i) {
        const auto next = static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)]);
        if ((next & 0xC0) != 0x80) return std::nullopt;
        character = character << 6 | (next & 0x3Fu);
    }
    constexpr char32_t least[] = {0, 0x80, 0x800, 0x10000};
    if (character < least[followers] || character > 0x10FFFF ||
        (character >= 0xD800 && character < 0xE000))
        return std::nullopt;
    bytes.remove_prefix(static_cast<std::size_t>(followers));
    return character;
}

std::optional<std::wstring> FromUtf8(std::string_view bytes, bool isStrict)
{
    std::wstring text;
    while (!bytes.empty()) {
        const std::optional<char32_t> character = TakeUtf8(bytes);
        if (!character && isStrict) return std::nullopt;
        AppendUtf16(text, character.value_or(replacement));
    }
    return text;
}

// Takes one character off `text`; the replacement for a lone surrogate.
char32_t TakeUtf16(std::wstring_view& text)
{
    const auto first = static_cast<char32_t>(text[0]);
    const char32_t second = text.size() > 1 ? static_cast<char32_t>(text[1]) : 0;
    text.remove_prefix(1);
    if (first < 0xD800 || first > 0xDFFF) return first;
    if (first > 0xDBFF || second < 0xDC00 || second > 0xDFFF) return replacement;
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void AppendUtf8(std::string& bytes, char32_t character)
{
    const auto add = [&](char32_t byte) { bytes += static_cast<char>(byte); };
    const int followers = character < 0x80      ? 0
                          : character < 0x800   ? 1
                          : character < 0x10000 ? 2
                                                : 3;
    constexpr char32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    add(leads[followers] | character >> 6 * followers);
    for (int i = followers - 1; i >= 0; --i)
        add(0x80 | (character >> 6 * i & 0x3F));
}

} // namespace

std::optional<std::wstring> WideFromBytes(UINT codePage, std::string_view bytes, DWORD flags)
{
    if (codePage == CP_UTF8) return FromUtf8(bytes, (flags & MB_ERR_INVALID_CHARS) != 0);
    return FromWindows1252(bytes);
}

std::string Utf8FromWide(std::wstring_view text)
{
    std::string bytes;
    while (!text.empty())
        AppendUtf8(bytes, TakeUtf16(text));
    return bytes;
}

} // namespace base
