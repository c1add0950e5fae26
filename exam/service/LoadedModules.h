#pragma once

#include <string>
#include <vector>

namespace exam {

/// A module of the running program.
struct LoadedModule
{
    std::wstring name;        ///< its file's name
    std::wstring version;     ///< of its file; empty when it does not say
    std::wstring description; ///< of its file; empty when it does not say
};

/// All modules, the program first.
std::vector<LoadedModule> LoadedModules();

} // namespace exam
