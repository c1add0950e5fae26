#pragma once

#include <zel_string_convert/export.h>

#include <string>
#include <vector>

// The host's side of the application's string table: texts by key in a base language, the one they
// were written in, and in the languages they were translated to. It is kept in XLIFF 1.2 files
// (docs/formats/string-table.md). Language tags are compared ignoring case. Any thread may call
// these functions.
namespace zel_string_convert {

/// Replaces the table with the one in a file, or in all the files "*.xlf" and "*.xliff" of a
/// folder, in the order of their names. The current language is kept when the new table has it;
/// otherwise the base language becomes the current one. False when there is no file, one cannot be
/// read or is not a string table, or their base languages differ. The table is then unchanged, and
/// *error, if given, tells a developer the file and the reason.
ZEL_STRING_CONVERT_API bool LoadTable(const std::wstring& path, std::wstring* error = nullptr);

/// Adds a file or folder to the table in the same way. The added texts replace those of a key that
/// is already present.
ZEL_STRING_CONVERT_API bool AddToTable(const std::wstring& path, std::wstring* error = nullptr);

/// Empties the table, which then has no language.
ZEL_STRING_CONVERT_API void ClearTable();

/// Chooses the current language, by its tag in the files ("de", "pt-BR"). False, with nothing
/// changed, when the table has no text in that language. The base language is always present.
ZEL_STRING_CONVERT_API bool SetLanguage(const std::wstring& language);

/// The tags in the spelling of the files; empty while the table is empty. The list begins with the
/// base language.
ZEL_STRING_CONVERT_API std::wstring CurrentLanguage();
ZEL_STRING_CONVERT_API std::wstring BaseLanguage();
ZEL_STRING_CONVERT_API std::vector<std::wstring> Languages();

} // namespace zel_string_convert
