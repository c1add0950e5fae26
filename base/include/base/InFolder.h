#pragma once

#include <base/FilePath.h>

namespace base {

/// The process's current folder, of any length; a backslash ends it only at the root of a drive.
inline std::wstring CurrentFolder()
{
    return FullPath(L".");
}

/// Makes a folder the process's current one for the length of a scope. The end of the scope brings
/// back the one before, whatever became the current folder meanwhile. All threads share it.
class InFolder
{
public:
    explicit InFolder(const std::wstring& folder)
        : m_before(CurrentFolder()), m_isInside(SetCurrentDirectoryW(folder.c_str()) != FALSE)
    {
    }
    ~InFolder() { SetCurrentDirectoryW(m_before.c_str()); }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

    /// False when the folder could not be entered.
    explicit operator bool() const { return m_isInside; }

private:
    std::wstring m_before;
    bool m_isInside;
};

} // namespace base
