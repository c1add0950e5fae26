#include "test_support/TemporaryRegistryKey.h"

#include <base/Handles.h>

#include <atomic>
#include <stdexcept>

namespace test_support {

namespace {

base::RegistryKey CreateKey(const std::wstring& path)
{
    base::RegistryKey key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                        key.put(), nullptr) != ERROR_SUCCESS)
        throw std::runtime_error("cannot create a registry key");
    return key;
}

} // namespace

TemporaryRegistryKey::TemporaryRegistryKey()
{
    static std::atomic<unsigned> serial{0};
    m_path = L"Software\\test" + std::to_wstring(GetCurrentProcessId()) + L"-" +
             std::to_wstring(++serial);
    // Process numbers repeat, and a test that was killed left its key behind.
    RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    CreateKey(m_path);
}

TemporaryRegistryKey::~TemporaryRegistryKey()
{
    RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
}

void TemporaryRegistryKey::Set(const std::wstring& subkey, const std::wstring& name, DWORD type,
                               const void* bytes, DWORD size) const
{
    const std::wstring path = subkey.empty() ? m_path : m_path + L"\\" + subkey;
    const base::RegistryKey key = CreateKey(path);
    const LSTATUS status =
        RegSetValueExW(key.get(), name.c_str(), 0, type, static_cast<const BYTE*>(bytes), size);
    if (status != 0) throw std::runtime_error("cannot set a registry value");
}

void TemporaryRegistryKey::SetText(const std::wstring& subkey, const std::wstring& name,
                                   const std::wstring& text) const
{
    Set(subkey, name, REG_SZ, text.c_str(),
        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void TemporaryRegistryKey::SetNumber(const std::wstring& subkey, const std::wstring& name,
                                     DWORD number) const
{
    Set(subkey, name, REG_DWORD, &number, sizeof number);
}

} // namespace test_support
