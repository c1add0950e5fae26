#pragma once

#include <windows.h>

#include <string>

namespace test_support {

inline std::wstring CurrentDirectory()
{
    wchar_t buffer[4096] = {};
    GetCurrentDirectoryW(4096, buffer);
    return buffer;
}

// Changes the current directory for the length of a scope.
class InDirectory
{
public:
    explicit InDirectory(const std::wstring& folder) : m_before(CurrentDirectory())
    {
        SetCurrentDirectoryW(folder.c_str());
    }
    ~InDirectory() { SetCurrentDirectoryW(m_before.c_str()); }
    InDirectory(const InDirectory&) = delete;
    InDirectory& operator=(const InDirectory&) = delete;

private:
    std::wstring m_before;
};

} // namespace test_support
