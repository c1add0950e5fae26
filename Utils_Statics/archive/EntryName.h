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

// The name as a path that stays below the folder it is taken from: folders separated by one
// backslash each, no drive letter, no root, nothing at the end of a folder's name. Nothing for a
// name that no such path can be made of.
std::optional<std::wstring> PathInside(std::wstring_view name);

} // namespace utils_statics
