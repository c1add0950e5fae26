// Installs and removes the Motion-JPEG codec for programs of this program's own architecture.
#include <base/Encoding.h>
#include <base/FilePath.h>
#include <base/Handles.h>
#include <base/ProgramVersion.h>

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

constexpr wchar_t driversKey[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Drivers32";
constexpr wchar_t entryName[] = L"vidc.MJPG";
constexpr wchar_t codecFile[] = L"mjpgcodec.dll";

int Fail(const char* what, DWORD error)
{
    std::fprintf(stderr, "codecsetup: %s", what);
    if (error != ERROR_SUCCESS) std::fprintf(stderr, " (error %lu)", error);
    std::fputs("\n", stderr);
    return 1;
}

// Prints UTF-8, because a path may contain any letters.
void Print(std::FILE* stream, const std::wstring& text)
{
    std::fputs(base::Utf8FromWide(text + L"\n").c_str(), stream);
}

// The registry key of the installed drivers; null with the error set when it cannot be opened.
class DriversKey
{
public:
    explicit DriversKey(REGSAM access)
        : m_error(RegOpenKeyExW(HKEY_LOCAL_MACHINE, driversKey, 0, access, m_key.put()))
    {
    }

    DWORD Error() const { return static_cast<DWORD>(m_error); }

    // Empty when there is no entry; "?" for one that is not a text.
    std::wstring Entry() const
    {
        DWORD size = 0;
        DWORD type = 0;
        if (RegQueryValueExW(m_key.get(), entryName, nullptr, &type, nullptr, &size) !=
            ERROR_SUCCESS)
            return {};
        std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
        size = static_cast<DWORD>((value.size() - 1) * sizeof(wchar_t));
        const LSTATUS result = RegQueryValueExW(m_key.get(), entryName, nullptr, &type,
                                                reinterpret_cast<BYTE*>(value.data()), &size);
        if (result != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return L"?";
        value.resize(std::wcslen(value.c_str())); // a stored null at the end is optional
        return value;
    }

    DWORD SetEntry(const std::wstring& value)
    {
        const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        return static_cast<DWORD>(RegSetValueExW(
            m_key.get(), entryName, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), size));
    }

    DWORD RemoveEntry() { return static_cast<DWORD>(RegDeleteValueW(m_key.get(), entryName)); }

private:
    base::RegistryKey m_key;
    LSTATUS m_error;
};

// The long form of an entry; the entry itself when there is no such file.
std::wstring LongPath(const std::wstring& entry)
{
    wchar_t longPath[MAX_PATH] = {};
    const DWORD length = GetLongPathNameW(entry.c_str(), longPath, MAX_PATH);
    return length > 0 && length < MAX_PATH ? longPath : entry;
}

// Compares the file's name. An entry may contain its short form.
bool IsOurs(const std::wstring& entry)
{
    const std::wstring path = LongPath(entry);
    const std::size_t slash = path.find_last_of(L"\\/");
    return _wcsicmp(path.substr(slash == std::wstring::npos ? 0 : slash + 1).c_str(), codecFile) ==
           0;
}

std::wstring CodecBesideProgram()
{
    const std::wstring program = base::ModuleFile(nullptr);
    return program.substr(0, program.find_last_of(L'\\') + 1) + codecFile;
}

// The path with its folder in short form if it has blanks, because entries of the drivers' key are
// cut at the first blank. Empty when there is no short form. The file keeps its name, which
// identifies it even when the file is gone.
std::wstring WithoutBlanks(const std::wstring& path)
{
    if (path.find(L' ') == std::wstring::npos) return path;
    const std::size_t slash = path.find_last_of(L'\\');
    wchar_t folder[MAX_PATH] = {};
    const DWORD length = GetShortPathNameW(path.substr(0, slash).c_str(), folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH || std::wcschr(folder, L' ')) return {};
    return folder + path.substr(slash);
}

int Install()
{
    const std::wstring beside = CodecBesideProgram();
    if (GetFileAttributesW(beside.c_str()) == INVALID_FILE_ATTRIBUTES)
        return Fail("mjpgcodec.dll is not beside this program", GetLastError());
    const std::wstring codec = WithoutBlanks(beside);
    if (codec.empty())
        return Fail("the codec's folder has a blank in its path and no short name", 0);
    DriversKey key(KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (key.Error())
        return Fail("cannot open the drivers' registry key; administrators can", key.Error());
    const std::wstring present = key.Entry();
    if (!present.empty() && !IsOurs(present)) {
        Print(stderr, L"codecsetup: another codec is installed as " + std::wstring(entryName) +
                          L": " + present);
        return 1;
    }
    if (const DWORD error = key.SetEntry(codec)) return Fail("cannot write the registry", error);
    Print(stdout, L"installed " + std::wstring(entryName) + L" = " + codec);
    return 0;
}

int Uninstall()
{
    DriversKey key(KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (key.Error())
        return Fail("cannot open the drivers' registry key; administrators can", key.Error());
    const std::wstring present = key.Entry();
    if (!IsOurs(present)) {
        std::puts(present.empty() ? "not installed"
                                  : "another codec is installed under this name; left alone");
        return 0;
    }
    if (const DWORD error = key.RemoveEntry()) return Fail("cannot write the registry", error);
    std::printf("removed %ls\n", entryName);
    return 0;
}

int Version()
{
    Print(stdout, L"codecsetup " + base::ProgramVersion());
    return 0;
}

int Status()
{
    const DriversKey key(KEY_QUERY_VALUE);
    if (key.Error()) return Fail("cannot open the drivers' registry key", key.Error());
    const std::wstring present = key.Entry();
    const bool gone = GetFileAttributesW(present.c_str()) == INVALID_FILE_ATTRIBUTES;
    if (present.empty())
        Print(stdout, L"not installed");
    else
        Print(stdout, gone ? present + L" (the file is gone)" : LongPath(present));
    return 0;
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    const std::wstring command = argc == 2 ? argv[1] : L"";
    if (command == L"install") return Install();
    if (command == L"remove") return Uninstall();
    if (command == L"status") return Status();
    if (command == L"--version") return Version();
    const bool isAsked = command == L"--help";
    std::fputs("usage: codecsetup install|remove|status|--version|--help\n"
               "Installs the codec that lies beside this program as vidc.MJPG, or removes it.\n",
               isAsked ? stdout : stderr);
    return isAsked ? 0 : 2;
}
