#pragma once

#include <string>

namespace exam {

/// Writes a text as UTF-8 to standard output or standard error, at once.
void WriteOut(const std::wstring& text);
void WriteError(const std::wstring& text);

} // namespace exam
