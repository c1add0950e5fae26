#pragma once

#include <windows.h>

#include <string>

namespace test_support {

// A new, empty key of the current user. Its end deletes it with all its content.
class TemporaryRegistryKey
{
public:
    TemporaryRegistryKey();
    ~TemporaryRegistryKey();
    TemporaryRegistryKey(const TemporaryRegistryKey&) = delete;
    TemporaryRegistryKey& operator=(const TemporaryRegistryKey&) = delete;

    // The path below HKEY_CURRENT_USER, without a backslash at its end.
    const std::wstring& Path() const { return m_path; }

    // Sets a value of a key below this one, which is made if it is missing, to bytes of any type.
    void Set(const std::wstring& subkey, const std::wstring& name, DWORD type, const void* bytes,
             DWORD size) const;
    void SetText(const std::wstring& subkey, const std::wstring& name,
                 const std::wstring& text) const;
    void SetNumber(const std::wstring& subkey, const std::wstring& name, DWORD number) const;

private:
    std::wstring m_path;
};

} // namespace test_support
