#pragma once

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

/// Prints the version resource of an executable file. False, with a sentence on standard error,
/// when the file has none.
bool PrintFileVersion(const std::wstring& path);

} // namespace exam
