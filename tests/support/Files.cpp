#include "test_support/Files.h"

#include <base/FileContents.h>

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <utility>

namespace test_support {

void WriteFile(const std::wstring& path, const std::string& bytes)
{
    std::ofstream file(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write a test file");
}

std::string ReadFile(const std::wstring& path)
{
    constexpr std::size_t limit = 0xFFFFFFFF;
    std::optional<std::string> bytes = base::ReadFileWhole(path.c_str(), limit);
    if (!bytes) throw std::runtime_error("cannot read a test file");
    return std::move(*bytes);
}

bool FileExists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

} // namespace test_support
