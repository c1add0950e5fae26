// The profile of the application: its settings in the registry or in an INI file.
#include <base/Handles.h>

#include <afxwin.h>

#include <cstdlib>
#include <cwchar>
#include <vector>

namespace {

base::RegistryKey OpenKey(const CString& path, REGSAM access)
{
    base::RegistryKey key;
    RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, key.put());
    return key;
}

base::RegistryKey CreateKey(const CString& path)
{
    base::RegistryKey key;
    RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                    nullptr, key.put(), nullptr);
    return key;
}

BOOL SucceededOrAbsent(LSTATUS status)
{
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

BOOL WriteValue(const CString& path, LPCTSTR entry, DWORD type, const void* data, size_t size)
{
    const base::RegistryKey key = CreateKey(path);
    return key && RegSetValueExW(key.get(), entry, 0, type, static_cast<const BYTE*>(data),
                                 static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

BOOL DeleteEntry(const CString& path, LPCTSTR entry)
{
    const base::RegistryKey key = OpenKey(path, KEY_SET_VALUE);
    return !key || SucceededOrAbsent(RegDeleteValueW(key.get(), entry));
}

// Reads the text of a value of type REG_SZ. The loop is needed because the value may grow after its
// size was queried.
bool ReadText(HKEY key, LPCTSTR entry, CString& text)
{
    std::vector<wchar_t> buffer(128);
    for (;;) {
        DWORD type = REG_NONE;
        DWORD size = static_cast<DWORD>(buffer.size() * sizeof(wchar_t));
        const LSTATUS status = RegQueryValueExW(key, entry, nullptr, &type,
                                                reinterpret_cast<BYTE*>(buffer.data()), &size);
        if (status == ERROR_SUCCESS && type == REG_SZ) {
            // The terminating null may be missing.
            const size_t length = size / sizeof(wchar_t);
            text.SetString(buffer.data(), static_cast<int>(wcsnlen(buffer.data(), length)));
            return true;
        }
        if (status != ERROR_MORE_DATA || type != REG_SZ) return false;
        buffer.resize(size / sizeof(wchar_t) + 1);
    }
}

CString ReadIniText(LPCTSTR file, LPCTSTR section, LPCTSTR entry, LPCTSTR defaultValue)
{
    constexpr DWORD largest = 1u << 20;
    for (DWORD size = 256;; size *= 4) {
        std::vector<wchar_t> buffer(size);
        const DWORD length = GetPrivateProfileStringW(
            section, entry, defaultValue ? defaultValue : L"", buffer.data(), size, file);
        // A text that was cut fills the buffer except for its last place.
        if (length + 1 < size || size >= largest) return {buffer.data(), static_cast<int>(length)};
    }
}

} // namespace

CString CWinApp::SectionKey(LPCTSTR section) const
{
    return CString(L"Software\\") + m_pszRegistryKey + L"\\" + m_pszProfileName + L"\\" + section;
}

void CWinApp::SetRegistryKey(LPCTSTR registryKey)
{
    std::free(const_cast<LPTSTR>(m_pszRegistryKey));
    m_pszRegistryKey = registryKey ? _wcsdup(registryKey) : nullptr;
    std::free(const_cast<LPTSTR>(m_pszProfileName));
    m_pszProfileName = m_pszAppName ? _wcsdup(m_pszAppName) : nullptr;
}

UINT CWinApp::GetProfileInt(LPCTSTR section, LPCTSTR entry, int defaultValue)
{
    if (!section || !entry) return static_cast<UINT>(defaultValue);
    if (!m_pszRegistryKey)
        return GetPrivateProfileIntW(section, entry, defaultValue, m_pszProfileName);
    const base::RegistryKey key = OpenKey(SectionKey(section), KEY_QUERY_VALUE);
    DWORD type = REG_NONE;
    DWORD value = 0;
    DWORD size = sizeof value;
    const bool found =
        key && RegQueryValueExW(key.get(), entry, nullptr, &type, reinterpret_cast<BYTE*>(&value),
                                &size) == ERROR_SUCCESS;
    return found && type == REG_DWORD && size == sizeof value ? value
                                                              : static_cast<UINT>(defaultValue);
}

CString CWinApp::GetProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR defaultValue)
{
    if (!section || !entry) return defaultValue;
    if (!m_pszRegistryKey) return ReadIniText(m_pszProfileName, section, entry, defaultValue);
    const base::RegistryKey key = OpenKey(SectionKey(section), KEY_QUERY_VALUE);
    CString text;
    return key && ReadText(key.get(), entry, text) ? text : CString(defaultValue);
}

BOOL CWinApp::WriteProfileInt(LPCTSTR section, LPCTSTR entry, int value)
{
    if (!section || !entry) return FALSE;
    if (m_pszRegistryKey)
        return WriteValue(SectionKey(section), entry, REG_DWORD, &value, sizeof value);
    CString text;
    text.Format(L"%d", value);
    return WritePrivateProfileStringW(section, entry, text, m_pszProfileName);
}

BOOL CWinApp::WriteProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR value)
{
    if (!section) return FALSE;
    if (!m_pszRegistryKey)
        return WritePrivateProfileStringW(section, entry, value, m_pszProfileName);
    const CString path = SectionKey(section);
    if (!entry) return SucceededOrAbsent(RegDeleteTreeW(HKEY_CURRENT_USER, path));
    if (!value) return DeleteEntry(path, entry);
    return WriteValue(path, entry, REG_SZ, value, (std::wcslen(value) + 1) * sizeof(wchar_t));
}
