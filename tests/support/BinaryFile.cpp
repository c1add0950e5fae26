#include "test_support/BinaryFile.h"

#include <windows.h>

#include <cstring>

namespace test_support {

std::vector<std::uint8_t> readBytes(const std::wstring& path)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {};
    LARGE_INTEGER size{};
    GetFileSizeEx(file, &size);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    bytes.resize(read);
    return bytes;
}

bool writeBytes(const std::wstring& path, const std::vector<std::uint8_t>& bytes)
{
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    const BOOL ok = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return ok && written == bytes.size();
}

std::uint32_t wordAt(const std::vector<std::uint8_t>& bytes, std::size_t offset)
{
    std::uint32_t word = 0xDEADBEEF;
    if (offset + sizeof word <= bytes.size()) std::memcpy(&word, bytes.data() + offset, sizeof word);
    return word;
}

} // namespace test_support
