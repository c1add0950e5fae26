#pragma once

#include <string>

namespace exam {

/// Prints the version resource of an executable file. False, with a sentence on standard error,
/// when the file has none.
bool PrintFileVersion(const std::wstring& path);

} // namespace exam
