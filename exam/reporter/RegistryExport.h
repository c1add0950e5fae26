#pragma once

#include <string>

namespace exam {

/// Writes a key of the registry, such as "HKCU\Software\Name", with all below it to a file for
/// registry editors (UTF-16, version 5.00). No file is made when there is no such key. False when
/// the file cannot be written whole.
bool ExportTree(const std::wstring& path, const std::wstring& file);

} // namespace exam
