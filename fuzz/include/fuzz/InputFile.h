#pragma once

#include <string>
#include <string_view>

namespace fuzz {

/// The path of a file that holds these bytes, until the next call. Natively the file is one in
/// memory, which the portable sources find.
std::wstring InputFile(std::string_view bytes);

} // namespace fuzz
