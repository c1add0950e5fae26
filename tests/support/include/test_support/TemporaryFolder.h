#pragma once

#include <string>

namespace test_support {

// A new, empty folder. Its end deletes it with all its content, read-only files included.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // An absolute path, with backslashes and without one at the end.
    const std::wstring& Path() const { return m_path; }

    // Path() + "\" + name
    std::wstring operator/(const std::wstring& name) const { return m_path + L"\\" + name; }

private:
    std::wstring m_path;
};

} // namespace test_support
