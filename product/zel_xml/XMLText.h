#pragma once

#include <string_view>

namespace zel_xml {

// Whether every character is one that XML 1.0 can hold (no lone surrogates, no control codes but
// tab and line ends).
bool IsXmlText(std::wstring_view text) noexcept;

} // namespace zel_xml
