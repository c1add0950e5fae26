#pragma once

#include <optional>
#include <string>
#include <string_view>

// The names that a zip archive gives its entries. They come from outside and are not trusted.
namespace utils_statics {

// Decodes a name of the archive: from UTF-8 where the entry says so and the bytes are valid, else
// from the system's ANSI code page.
std::wstring EntryText(std::string_view bytes, bool isUtf8);

// True for the name of a folder: an empty name, or one that ends in a slash of either kind.
bool IsFolderEntry(std::wstring_view name);

// The path to extract an entry to, relative to the current folder, with one backslash between
// folders. The platform resolves the name after its drive letter and leading separators are
// removed. The path is empty for the current folder itself and for a name too long for any path.
// There is none for a name that leads out of the current folder: to its parent, a device or an
// alternate stream of a file.
std::optional<std::wstring> PathInside(std::wstring_view name);

} // namespace utils_statics
