#pragma once

#include <string>
#include <vector>

namespace zel_string_convert {

// The file given, or the string table files of the folder given in the order of their names.
// Empty when there is nothing at the path.
std::vector<std::wstring> XliffFilesAt(const std::wstring& path);

} // namespace zel_string_convert
