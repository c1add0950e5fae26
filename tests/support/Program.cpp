#include "test_support/Program.h"

#include <windows.h>

namespace test_support {

std::wstring ProgramPath()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

std::wstring BesideProgram(const std::wstring& name)
{
    const std::wstring program = ProgramPath();
    return program.substr(0, program.find_last_of(L'\\') + 1) + name;
}

} // namespace test_support
