#pragma once

#include <optional>
#include <string>
#include <vector>

namespace exam {

/// A module of the running program.
struct LoadedModule
{
    std::wstring name;        ///< name of its file
    std::wstring version;     ///< version of its file; empty when there is none
    std::wstring description; ///< description of its file; empty when there is none
};

/// All modules, the program first.
std::vector<LoadedModule> LoadedModules();

/// The version resource of an executable file as lines of text; nothing when the file has none that
/// is sound.
std::optional<std::wstring> FileVersionText(const std::wstring& path);

/// Prints the version resource of an executable file. False, with a sentence on standard error,
/// when the file has none.
bool PrintFileVersion(const std::wstring& path);

} // namespace exam
