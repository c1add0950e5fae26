#pragma once

#include <string>

namespace test_support {

// A new, empty folder that is deleted with all it holds, read-only files included, when the object
// goes.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // Absolute, with backslashes and without one at the end.
    const std::wstring& Path() const { return m_path; }

    // path() + "\" + name
    std::wstring operator/(const std::wstring& name) const { return m_path + L"\\" + name; }

private:
    std::wstring m_path;
};

} // namespace test_support
