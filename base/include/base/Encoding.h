#pragma once

#include <windows.h>

#include <climits>
#include <optional>
#include <string>
#include <string_view>

namespace base {

/// The text of `bytes` in a code page of the platform. Invalid bytes become replacement characters,
/// but with MB_ERR_INVALID_CHARS in `flags` they give no text. 2 GiB or more give none either.
inline std::optional<std::wstring> WideFromBytes(UINT codePage, std::string_view bytes,
                                                 DWORD flags = 0)
{
    if (bytes.empty()) return std::wstring();
    if (bytes.size() > INT_MAX) return std::nullopt;
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    if (length <= 0) return std::nullopt;
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    if (MultiByteToWideChar(codePage, flags, bytes.data(), size, text.data(), length) != length)
        return std::nullopt;
    return text;
}

/// Converts UTF-8 to UTF-16; invalid bytes become replacement characters. Empty for 2 GiB or more.
inline std::wstring WideFromUtf8(std::string_view utf8)
{
    return WideFromBytes(CP_UTF8, utf8).value_or(std::wstring());
}

/// Converts `text` to a code page of the platform. Lone surrogates and characters that the code
/// page lacks become its replacement character. Empty for 2^31 characters or more.
inline std::string BytesFromWide(UINT codePage, std::wstring_view text)
{
    if (text.empty() || text.size() > INT_MAX) return {};
    const int length = static_cast<int>(text.size());
    const int size =
        WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
    WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

/// Converts UTF-16 to UTF-8; a lone surrogate becomes the replacement character. Empty for 2^31
/// characters or more.
inline std::string Utf8FromWide(std::wstring_view text)
{
    return BytesFromWide(CP_UTF8, text);
}

} // namespace base
