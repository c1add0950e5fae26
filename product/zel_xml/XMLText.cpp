#include "XMLText.h"

namespace zel_xml {

namespace {

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

} // namespace

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

} // namespace zel_xml
