#pragma once

// The conversions of base/Encoding.h where there is no platform to ask. Two code pages are known:
// UTF-8, and Windows-1252, which is also the system's own.

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace base {

std::optional<std::wstring> WideFromBytes(UINT codePage, std::string_view bytes, DWORD flags = 0);
std::string Utf8FromWide(std::wstring_view text);

inline std::wstring WideFromUtf8(std::string_view utf8)
{
    return WideFromBytes(CP_UTF8, utf8).value_or(std::wstring());
}

} // namespace base
