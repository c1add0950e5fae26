#include "test_support/Program.h"

#include <windows.h>

namespace test_support {

std::wstring programPath()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

std::wstring besideProgram(const std::wstring& name)
{
    const std::wstring program = programPath();
    return program.substr(0, program.find_last_of(L'\\') + 1) + name;
}

} // namespace test_support
