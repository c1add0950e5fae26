#pragma once

#include <cstdarg>
#include <optional>
#include <string>

namespace utils_statics {

// True when every conversion of `text` is usable (see FormatReader) and, one by one, takes the same
// kind of argument as the conversion at the same place in `contract`. `text` may use fewer
// conversions than `contract`, never more. A contract that contains a refused conversion ends
// before it.
bool SatisfiesContract(const wchar_t* text, const wchar_t* contract);

// `text` formatted with `arguments`, which match `contract`; nothing when `text` does not satisfy
// `contract` or the platform cannot convert a number. No argument is fetched before all of `text`
// has been checked.
std::optional<std::wstring> FormatByContract(const wchar_t* text, const wchar_t* contract,
                                             va_list arguments);

} // namespace utils_statics
