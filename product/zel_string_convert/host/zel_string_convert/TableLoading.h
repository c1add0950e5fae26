#pragma once

#include <zel_string_convert/export.h>

#include <string>
#include <vector>

// The application's string table as its host fills it: texts by key in a base language, the one
// they were written in, and in the languages they were translated to. It is kept in XLIFF 1.2 files
// (docs/formats/string-table.md). Language tags are compared ignoring case. Any thread.
namespace zel_string_convert {

/// Replaces the table by the one in a file, or in all the files "*.xlf" and "*.xliff" of a folder,
/// in the order of their names. The current language is kept when the new table has it, and else
/// becomes the base language. False when there is no file, one cannot be read or is not a string
/// table, or their base languages differ; the table is then as it was, and *error, if given, names
/// the file and the reason for a developer.
ZEL_STRING_CONVERT_API bool LoadTable(const std::wstring& path, std::wstring* error = nullptr);

/// Adds a file or folder to the table, likewise. Where a key is there already, the added texts take
/// its place.
ZEL_STRING_CONVERT_API bool AddToTable(const std::wstring& path, std::wstring* error = nullptr);

/// Empties the table; there is no language then.
ZEL_STRING_CONVERT_API void ClearTable();

/// Chooses the current language, by its tag in the files ("de", "pt-BR"). False, and nothing
/// changes, when the table has no text in it; the base language always is there.
ZEL_STRING_CONVERT_API bool SetLanguage(const std::wstring& language);

/// The tags as the files write them; empty while the table is. The list begins with the base
/// language.
ZEL_STRING_CONVERT_API std::wstring CurrentLanguage();
ZEL_STRING_CONVERT_API std::wstring BaseLanguage();
ZEL_STRING_CONVERT_API std::vector<std::wstring> Languages();

} // namespace zel_string_convert
