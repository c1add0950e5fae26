#pragma once

#include <base/FilePath.h>

#include <string>

namespace test_support {

// The full path of the running test program.
inline std::wstring ProgramPath()
{
    return base::ModuleFile(nullptr);
}

// The full path of a file in the program's folder. For an empty name, the folder itself with a
// backslash at its end.
inline std::wstring BesideProgram(const std::wstring& name)
{
    const std::wstring program = ProgramPath();
    return program.substr(0, program.find_last_of(L'\\') + 1) + name;
}

} // namespace test_support
