#pragma once

#include <string>

namespace exam {

/// Writes a text to standard output or standard error, at once. Files and pipes get UTF-8. Without
/// either, the console that the program was started from shows the text.
void WriteOut(const std::wstring& text);
void WriteError(const std::wstring& text);

} // namespace exam
