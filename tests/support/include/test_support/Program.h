#pragma once

#include <string>

namespace test_support {

// The full path of the running test program.
std::wstring ProgramPath();

// The full path of a file in the program's folder. For an empty name, the folder itself with a
// backslash at its end.
std::wstring BesideProgram(const std::wstring& name);

} // namespace test_support
