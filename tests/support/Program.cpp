#include "test_support/Program.h"

#include <base/FilePath.h>

namespace test_support {

std::wstring ProgramPath()
{
    return base::ModuleFile(nullptr);
}

std::wstring BesideProgram(const std::wstring& name)
{
    const std::wstring program = ProgramPath();
    return program.substr(0, program.find_last_of(L'\\') + 1) + name;
}

} // namespace test_support
