#include "test_support/TemporaryFolder.h"

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <stdexcept>

namespace test_support {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
{
    static std::atomic<unsigned> serial{0};
    wchar_t base[MAX_PATH] = {};
    if (GetTempPathW(MAX_PATH, base) == 0) throw std::runtime_error("GetTempPathW failed");
    const std::wstring prefix =
        std::wstring(base) + L"us" + std::to_wstring(GetCurrentProcessId()) + L"-";
    do { // process numbers repeat, and a test that was killed left its folder behind
        m_path = prefix + std::to_wstring(++serial);
        if (CreateDirectoryW(m_path.c_str(), nullptr)) return;
    } while (GetLastError() == ERROR_ALREADY_EXISTS);
    throw std::runtime_error("cannot create a temporary folder");
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(m_path, error))
        SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
    fs::remove_all(m_path, error);
}

} // namespace test_support
