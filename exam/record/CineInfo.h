#pragma once

#include <string>

namespace exam {

// Prints the header of a raw cine file, a field a line, and checks the file's size against it:
// header, and count times the size of a frame. False, with a sentence on standard error, when that
// does not hold or cannot be told.
bool PrintCineInfo(const std::wstring& path);

} // namespace exam
