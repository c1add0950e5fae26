// Installs and removes the Motion-JPEG codec for programs of this program's own architecture.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

constexpr wchar_t driversKey[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Drivers32";
constexpr wchar_t entryName[] = L"vidc.MJPG";
constexpr wchar_t codecFile[] = L"mjpgcodec.dll";

int fail(const char* what, DWORD error)
{
    std::fprintf(stderr, "codecsetup: %s (error %lu)\n", what, error);
    return 1;
}

// The registry key of the installed drivers; null with the error set when it cannot be opened.
class DriversKey
{
public:
    explicit DriversKey(REGSAM access) { m_error = RegOpenKeyExW(HKEY_LOCAL_MACHINE, driversKey, 0, access, &m_key); }
    ~DriversKey()
    {
        if (m_key) RegCloseKey(m_key);
    }
    DriversKey(const DriversKey&) = delete;
    DriversKey& operator=(const DriversKey&) = delete;

    DWORD error() const { return static_cast<DWORD>(m_error); }

    // Empty when there is no entry.
    std::wstring entry() const
    {
        wchar_t value[MAX_PATH] = {};
        DWORD size = sizeof value - sizeof(wchar_t);
        DWORD type = 0;
        const LSTATUS result =
            RegQueryValueExW(m_key, entryName, nullptr, &type, reinterpret_cast<BYTE*>(value), &size);
        return result == ERROR_SUCCESS && type == REG_SZ ? value : L"";
    }

    DWORD setEntry(const std::wstring& value)
    {
        const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        return static_cast<DWORD>(
            RegSetValueExW(m_key, entryName, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), size));
    }

    DWORD removeEntry() { return static_cast<DWORD>(RegDeleteValueW(m_key, entryName)); }

private:
    HKEY m_key = nullptr;
    LSTATUS m_error;
};

bool isOurs(const std::wstring& entry)
{
    const std::size_t slash = entry.find_last_of(L"\\/");
    const std::wstring name = slash == std::wstring::npos ? entry : entry.substr(slash + 1);
    // A short path may spell the name in capitals or as MJPGCO~1.DLL.
    return _wcsnicmp(name.c_str(), L"mjpgco", 6) == 0;
}

// The codec beside this program. What the drivers' key names is cut at the first blank, so a path with blanks is
// shortened; empty when that is not possible.
std::wstring codecPath()
{
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return {};
    std::wstring codec(path);
    codec.replace(codec.find_last_of(L'\\') + 1, std::wstring::npos, codecFile);
    if (codec.find(L' ') == std::wstring::npos) return codec;
    const DWORD shortLength = GetShortPathNameW(codec.c_str(), path, MAX_PATH);
    if (shortLength == 0 || shortLength >= MAX_PATH || std::wcschr(path, L' ')) return {};
    return path;
}

int install()
{
    const std::wstring codec = codecPath();
    if (codec.empty()) return fail("the codec's folder has a blank in its path and no short name", 0);
    if (GetFileAttributesW(codec.c_str()) == INVALID_FILE_ATTRIBUTES)
        return fail("mjpgcodec.dll is not beside this program", GetLastError());
    DriversKey key(KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (key.error()) return fail("cannot open the drivers' registry key; administrators can", key.error());
    const std::wstring present = key.entry();
    if (!present.empty() && !isOurs(present)) {
        std::fprintf(stderr, "codecsetup: another codec is installed as %ls: %ls\n", entryName, present.c_str());
        return 1;
    }
    if (const DWORD error = key.setEntry(codec)) return fail("cannot write the registry", error);
    std::printf("installed %ls = %ls\n", entryName, codec.c_str());
    return 0;
}

int uninstall()
{
    DriversKey key(KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (key.error()) return fail("cannot open the drivers' registry key; administrators can", key.error());
    const std::wstring present = key.entry();
    if (!isOurs(present)) {
        std::puts(present.empty() ? "not installed" : "another codec is installed under this name; left alone");
        return 0;
    }
    if (const DWORD error = key.removeEntry()) return fail("cannot write the registry", error);
    std::printf("removed %ls\n", entryName);
    return 0;
}

int status()
{
    const DriversKey key(KEY_QUERY_VALUE);
    if (key.error()) return fail("cannot open the drivers' registry key", key.error());
    const std::wstring present = key.entry();
    std::printf("%ls\n", present.empty() ? L"not installed" : present.c_str());
    return 0;
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    const std::wstring command = argc == 2 ? argv[1] : L"";
    if (command == L"install") return install();
    if (command == L"remove") return uninstall();
    if (command == L"status") return status();
    std::puts("usage: codecsetup install|remove|status\n"
              "Installs the codec that lies beside this program as vidc.MJPG, or removes it.");
    return 2;
}
