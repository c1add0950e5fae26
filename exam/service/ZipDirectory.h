#pragma once

#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The names of a zip archive's entries, in the order of its directory. Nothing when the file is
/// not a zip archive or its directory is damaged.
std::optional<std::vector<std::wstring>> ReadEntryNames(const std::wstring& archive);

/// True when a name is that of a folder.
bool IsFolderName(const std::wstring& name);

} // namespace exam
