#pragma once

#include <string>

namespace exam {

/// Prints the header of a raw cine file, a field a line, and checks that its frames can be shown
/// and are as many as it counts. False, with a sentence on standard error, when that does not hold.
bool PrintCineInfo(const std::wstring& path);

} // namespace exam
