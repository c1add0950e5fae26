#pragma once

#include <string>
#include <string_view>

namespace zel_xml {

// Locale-independent texts of numbers; zelXMLNode.h states the accepted texts and the meaning of
// precision.
bool ParseInt(std::wstring_view text, int& value) noexcept;
bool ParseDouble(std::wstring_view text, double& value) noexcept;
std::wstring FormatInt(int value);
std::wstring FormatDouble(double value, int precision);

} // namespace zel_xml
