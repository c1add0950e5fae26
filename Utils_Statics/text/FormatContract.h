#pragma once

#include <cstdarg>
#include <optional>
#include <string>

namespace utils_statics {

// `text` formatted with `arguments`, which match `contract`. Nothing when the platform cannot
// convert a number, and when `text` does not satisfy `contract`. It does when every conversion of
// it is usable (see FormatReader) and, one by one, takes the same kind of argument as the
// conversion at the same place in `contract`. `text` may use fewer conversions than `contract`,
// never more. A contract that contains a refused conversion ends before it.
//
// No argument is fetched before all of `text` has been checked.
std::optional<std::wstring> FormatByContract(const wchar_t* text, const wchar_t* contract,
                                             va_list arguments);

} // namespace utils_statics
