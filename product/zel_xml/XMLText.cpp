#include "XMLText.h"

#include <base/Encoding.h>

#include <windows.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace zel_xml {

namespace {

using namespace std::string_view_literals;

constexpr unsigned codePageLatin1 = 28591;
constexpr unsigned codePageWindows1252 = 1252;

std::string LowerCase(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

// The encoding that an XML declaration at the start of the bytes names, in lower case; empty when
// it names none.
std::string DeclaredEncoding(std::string_view bytes)
{
    if (!bytes.starts_with("<?xml"sv)) return {};
    const std::string_view declaration =
        bytes.substr(0, std::min<std::size_t>(bytes.find("?>"sv), 256));
    const std::size_t key = declaration.find("encoding"sv);
    if (key == std::string_view::npos) return {};
    const std::size_t open = declaration.find_first_of("\"'"sv, key);
    if (open == std::string_view::npos) return {};
    const std::size_t close = declaration.find(declaration[open], open + 1);
    if (close == std::string_view::npos) return {};
    return LowerCase(declaration.substr(open + 1, close - open - 1));
}

// The code page of a byte encoding; 0 when it is not one that is read.
unsigned CodePageOf(const std::string& encoding)
{
    if (encoding.empty() || encoding == "utf-8" || encoding == "utf8" || encoding == "us-ascii")
        return CP_UTF8;
    if (encoding == "iso-8859-1" || encoding == "latin1") return codePageLatin1;
    if (encoding == "windows-1252") return codePageWindows1252;
    return 0;
}

bool DecodeUtf16(std::string_view bytes, bool bigEndian, std::wstring& text)
{
    if (bytes.size() % 2 != 0) return false;
    text.resize(bytes.size() / 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned first = static_cast<unsigned char>(bytes[2 * i]);
        const unsigned second = static_cast<unsigned char>(bytes[2 * i + 1]);
        text[i] = static_cast<wchar_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return true;
}

bool DecodeByMark(std::string_view bytes, std::wstring& text)
{
    if (bytes.starts_with("\xFF\xFE"sv)) return DecodeUtf16(bytes.substr(2), false, text);
    if (bytes.starts_with("\xFE\xFF"sv)) return DecodeUtf16(bytes.substr(2), true, text);
    if (bytes.starts_with("<\0"sv)) return DecodeUtf16(bytes, false, text);
    if (bytes.starts_with("\0<"sv)) return DecodeUtf16(bytes, true, text);
    const bool marked = bytes.starts_with("\xEF\xBB\xBF"sv);
    if (marked) bytes.remove_prefix(3);
    const unsigned codePage = CodePageOf(DeclaredEncoding(bytes));
    if (codePage == 0 || (marked && codePage != CP_UTF8)) return false;
    if (bytes.empty()) return false;
    std::optional<std::wstring> decoded =
        base::WideFromBytes(codePage, bytes, MB_ERR_INVALID_CHARS);
    if (!decoded) return false;
    text = *std::move(decoded);
    return true;
}

bool IsHighSurrogate(wchar_t c) noexcept
{
    return c >= 0xD800 && c <= 0xDBFF;
}

bool IsLowSurrogate(wchar_t c) noexcept
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

bool IsPlainCharacter(wchar_t c) noexcept
{
    if (c < 0x20) return c == L'\t' || c == L'\n' || c == L'\r';
    return c < 0xD800 || (c > 0xDFFF && c < 0xFFFE);
}

bool IsNameStart(wchar_t c) noexcept
{
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c == L'_' || c == L':' ||
           c >= 0xC0;
}

bool IsNameCharacter(wchar_t c) noexcept
{
    return IsNameStart(c) || (c >= L'0' && c <= L'9') || c == L'-' || c == L'.' || c == 0xB7;
}

} // namespace

bool DecodeXml(std::string_view bytes, std::wstring& text)
{
    return DecodeByMark(bytes, text) && IsXmlText(text);
}

bool IsXmlText(std::wstring_view text) noexcept
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPlainCharacter(text[i])) continue;
        if (!IsHighSurrogate(text[i]) || i + 1 == text.size() || !IsLowSurrogate(text[i + 1]))
            return false;
        ++i;
    }
    return true;
}

bool IsXmlName(const wchar_t* name) noexcept
{
    if (!name) return false;
    const std::wstring_view text(name);
    return !text.empty() && IsNameStart(text[0]) &&
           std::all_of(text.begin(), text.end(), IsNameCharacter) && IsXmlText(text);
}

} // namespace zel_xml
