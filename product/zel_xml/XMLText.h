#pragma once

#include <string>
#include <string_view>

namespace zel_xml {

// The bytes of an XML file as UTF-16. The encoding is the byte order mark's or the declaration's;
// false when it is unknown, when a byte sequence is wrong in it, or when a character is not allowed
// in XML.
bool DecodeXml(std::string_view bytes, std::wstring& text);

// Whether every character is one that XML 1.0 can hold (no lone surrogates, no control codes but
// tab and line ends).
bool IsXmlText(std::wstring_view text) noexcept;

// Whether the text can name an element or an attribute.
bool IsXmlName(const wchar_t* name) noexcept;

} // namespace zel_xml
