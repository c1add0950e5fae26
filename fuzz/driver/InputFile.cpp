#include <fuzz/InputFile.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>

namespace fuzz {

std::wstring InputFile(std::string_view bytes)
{
    static const test_support::TemporaryFolder folder;
    const std::wstring path = folder / L"input";
    test_support::WriteFile(path, std::string(bytes));
    return path;
}

} // namespace fuzz
