#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zel_string_convert {

struct XliffUnit
{
    std::string key; // UTF-8
    std::wstring source;
    std::optional<std::wstring> target; // absent while it is not translated
};

// One <file> element: the units of one pair of languages.
struct XliffSection
{
    std::wstring sourceLanguage;
    std::wstring targetLanguage; // may be empty, when no unit has a target
    std::vector<XliffUnit> units;
};

// Reads an XLIFF 1.2 file. Nothing, and error says why, when it cannot be read or is no string
// table.
std::optional<std::vector<XliffSection>> ReadXliffFile(const std::wstring& path,
                                                       std::wstring& error);

} // namespace zel_string_convert
