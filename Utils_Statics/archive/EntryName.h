#pragma once

#include <optional>
#include <string>
#include <string_view>

// The names that a zip archive gives its entries. They come from outside and are not trusted.
namespace utils_statics {

// The text of a name as it stands in the archive: in UTF-8 where the entry says so and it is, else
// in the system's ANSI code page.
std::wstring EntryText(std::string_view bytes, bool isUtf8);

// Whether the name is that of a folder: nothing follows its last slash, of either kind.
bool IsFolderEntry(std::wstring_view name);

// Where an entry of that name goes, as a path relative to the current folder: what the platform
// makes of the name without its drive letter and the separators at its beginning, with one
// backslash between folders. Empty for the current folder itself and for a name too long for any
// path. Nothing for a name that leads out of the current folder: to its parent, a device or an
// alternate stream of a file.
std::optional<std::wstring> PathInside(std::wstring_view name);

} // namespace utils_statics
