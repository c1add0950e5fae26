#pragma once

#include <string_view>

namespace zel_xml {

// True when XML 1.0 allows every character (no lone surrogates, no control codes but tab and line
// ends).
bool IsXmlText(std::wstring_view text) noexcept;

} // namespace zel_xml
