#pragma once

#include <atlstr.h>

#include <string_view>

namespace utils_statics {

// `text`, or an empty text for null.
inline const wchar_t* OrEmpty(const wchar_t* text)
{
    return text ? text : L"";
}

// The characters of a text, embedded zeros included. The view is valid until the text changes.
inline std::wstring_view View(const CString& text)
{
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

inline CString ToCString(std::wstring_view text)
{
    return CString(text.data(), static_cast<int>(text.size()));
}

} // namespace utils_statics
