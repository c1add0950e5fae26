#include "test_support/InstalledCodec.h"

#include "test_support/Program.h"

#include <windows.h>

#include <stdexcept>

namespace test_support {

namespace {

constexpr wchar_t driversKey[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Drivers32";

bool SetEntry(const std::wstring& entry, const std::wstring& value)
{
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    return RegSetKeyValueW(HKEY_LOCAL_MACHINE, driversKey, entry.c_str(), REG_SZ, value.c_str(),
                           size) == ERROR_SUCCESS;
}

// The platform cuts the registry's file name at the first blank, so a folder with a blank is given
// by its short form.
std::wstring WithoutBlanks(const std::wstring& path)
{
    if (path.find(L' ') == std::wstring::npos) return path;
    const std::size_t slash = path.find_last_of(L'\\');
    wchar_t folder[MAX_PATH] = {};
    GetShortPathNameW(path.substr(0, slash).c_str(), folder, MAX_PATH);
    return folder + path.substr(slash);
}

} // namespace

InstalledCodec::InstalledCodec(const std::wstring& fourcc, const std::wstring& dll)
    : m_entry(L"vidc." + fourcc), m_path(WithoutBlanks(BesideProgram(dll)))
{
    wchar_t before[MAX_PATH] = {};
    DWORD size = sizeof before;
    RegGetValueW(HKEY_LOCAL_MACHINE, driversKey, m_entry.c_str(), RRF_RT_REG_SZ, nullptr, before,
                 &size);
    m_before = before;
    if (!SetEntry(m_entry, m_path))
        throw std::runtime_error("cannot install a codec: the registry refuses");
}

InstalledCodec::~InstalledCodec()
{
    if (m_before.empty())
        RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, driversKey, m_entry.c_str());
    else
        SetEntry(m_entry, m_before);
}

} // namespace test_support
