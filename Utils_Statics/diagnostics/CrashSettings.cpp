#include "diagnostics/CrashSettings.h"

#include <base/Handles.h>

namespace utils_statics {

namespace {

base::RegistryKey OpenSection(const wchar_t* section) noexcept
{
    FixedText<256> path;
    path = L"Software\\Kestrow\\Exam\\";
    path += section;
    base::RegistryKey key;
    RegOpenKeyExW(HKEY_CURRENT_USER, path.Text(), 0, KEY_QUERY_VALUE, key.put());
    return key;
}

// Reads a value of one type into `out`; `size` becomes its size in bytes.
bool ReadValue(const wchar_t* section, const wchar_t* name, DWORD wantedType, void* out,
               DWORD& size) noexcept
{
    const base::RegistryKey key = OpenSection(section);
    DWORD type = REG_NONE;
    return key &&
           RegQueryValueExW(key.get(), name, nullptr, &type, static_cast<BYTE*>(out), &size) ==
               ERROR_SUCCESS &&
           type == wantedType;
}

} // namespace

int CrashSettingNumber(const wchar_t* section, const wchar_t* name, int defaultValue) noexcept
{
    int number = 0;
    DWORD size = sizeof number;
    const bool isRead = ReadValue(section, name, REG_DWORD, &number, size);
    return isRead && size == sizeof number ? number : defaultValue;
}

void CrashSettingText(const wchar_t* section, const wchar_t* name, const wchar_t* defaultValue,
                      SettingText& out) noexcept
{
    DWORD size = SettingText::capacity * sizeof(wchar_t); // the registry need not store a null
    if (!ReadValue(section, name, REG_SZ, out.data(), size)) {
        out = defaultValue;
        return;
    }
    out.data()[size / sizeof(wchar_t)] = L'\0';
    out.Measure();
}

} // namespace utils_statics
