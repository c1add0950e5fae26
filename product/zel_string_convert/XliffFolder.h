#pragma once

#include <string>
#include <vector>

namespace zel_string_convert {

// The given file, or the string table files of the given folder in the order of their names. Empty
// when there is nothing at the path.
std::vector<std::wstring> XliffFilesAt(const std::wstring& path);

} // namespace zel_string_convert
