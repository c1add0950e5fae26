#pragma once

#include <string>

namespace test_support {

// Writes a whole file, replacing what was there; throws when it cannot.
void WriteFile(const std::wstring& path, const std::string& bytes);

// Reads a whole file; throws when it cannot.
std::string ReadFile(const std::wstring& path);

// True when there is a file or a folder.
bool FileExists(const std::wstring& path);

} // namespace test_support
