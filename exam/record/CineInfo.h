#pragma once

#include <string>

namespace exam {

/// Prints the header of a raw cine file, a field a line, and checks that the file's size is that of
/// the header and of as many frames as it counts. False, with a sentence on standard error, when it
/// is not, or when this cannot be known.
bool PrintCineInfo(const std::wstring& path);

} // namespace exam
