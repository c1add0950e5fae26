#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zel_string_convert {

struct XliffUnit
{
    std::string key; // UTF-8
    std::wstring source;
    std::optional<std::wstring> target; // absent until it is translated
};

// One <file> element: the units of one pair of languages.
struct XliffSection
{
    std::wstring sourceLanguage;
    std::wstring targetLanguage; // may be empty, when no unit has a target
    std::vector<XliffUnit> units;
};

// The given file, or the string table files of the given folder in the order of their names. Empty
// when there is nothing at the path.
std::vector<std::wstring> XliffFilesAt(const std::wstring& path);

// Reads an XLIFF 1.2 file. The result is empty, and error tells the reason, when the file cannot be
// read or is not a string table.
std::optional<std::vector<XliffSection>> ReadXliffFile(const std::wstring& path,
                                                       std::wstring& error);

} // namespace zel_string_convert
