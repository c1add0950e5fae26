#pragma once

#include <string>
#include <string_view>

namespace zel_xml {

// Locale-independent texts of numbers; zelXMLNode.h says what is accepted and how precision counts.
bool parseInt(std::wstring_view text, int& value) noexcept;
bool parseDouble(std::wstring_view text, double& value) noexcept;
std::wstring formatInt(int value);
std::wstring formatDouble(double value, int precision);

} // namespace zel_xml
