#pragma once

#include <string>

namespace exam {

/// Writes a text to standard output at once. Files and pipes get UTF-8. Without either, the console
/// that the program was started from shows the text.
void WriteOut(const std::wstring& text);

/// Writes a line to standard error in the same way: the program's name and a sentence that says
/// what went wrong. The result is false.
bool Fail(const std::wstring& problem);

} // namespace exam
