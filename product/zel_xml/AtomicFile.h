#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace zel_xml {

// Fills a new file; false when that fails (a full disk, say).
using FileFiller = std::function<bool(HANDLE file)>;

// Writes all bytes at the file's current position.
bool WriteBytes(HANDLE file, const std::string& bytes);

// Lets fill write a new file beside path (absolute) and puts it in path's place in one step. On any
// failure, even an exception from fill, path is unchanged and nothing is left beside it.
bool ReplaceAtomically(const std::wstring& path, const FileFiller& fill);

} // namespace zel_xml
