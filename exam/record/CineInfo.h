#pragma once

#include <string>

namespace exam {

/// Prints the header of a raw cine file, one field a line. It checks that the frames can be shown
/// and are as many as the header counts. False, with a sentence on standard error, when that does
/// not hold.
bool PrintCineInfo(const std::wstring& path);

} // namespace exam
