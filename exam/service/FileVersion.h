#pragma once

#include <string>

namespace exam {

/// Prints what the version resource of an executable file says. False, with a sentence on standard
/// error, when the file has none.
bool PrintFileVersion(const std::wstring& path);

} // namespace exam
