#pragma once

#include "text/FormatText.h"

#include <string>

namespace utils_statics {

// The text of an argument of the conversion's own size: signed for %d and %i, unsigned for the
// others.
std::wstring IntegerText(const FormatConversion& conversion, long long argument);

// Upper-case hexadecimal digits, as many as an address of the program has.
std::wstring AddressText(const FormatConversion& conversion, const void* address);

} // namespace utils_statics
