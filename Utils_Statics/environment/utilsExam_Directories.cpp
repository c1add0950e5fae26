// utilsExam: creating, measuring, copying and deleting directories.
#include "Utils_Statics/utilsExam.h"

#include "environment/CurrentDirectoryScope.h"
#include "environment/EnvironmentLog.h"
#include "environment/PathText.h"

#include <base/Handles.h>

#include <direct.h>
#include <shellapi.h>
#include <shlwapi.h>

#include <cstdint>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

using namespace utils_statics;

namespace {

bool MakeDirectory(const std::wstring& path)
{
    return _wmkdir(path.c_str()) == 0;
}

// Creates every prefix that ends before the second or a later backslash, then the whole path. The
// component before the first backslash is never created by itself: it is a drive, or the first
// folder of a relative path.
bool MakeDirectoryWithParents(const std::wstring& path)
{
    const std::size_t first = path.find(L'\\');
    if (first == std::wstring::npos) return false;
    for (auto cut = path.find(L'\\', first + 1); cut != std::wstring::npos;
         cut = path.find(L'\\', cut + 1))
        MakeDirectory(path.substr(0, cut));
    return MakeDirectory(path);
}

// A path as SHFileOperationW takes it: a list of one path in a fixed buffer, ended by two zero
// characters. So at most 258 characters fit.
class ShellPathBuffer
{
public:
    explicit ShellPathBuffer(const std::wstring& path) : m_fits(path.size() + 2 <= MAX_PATH)
    {
        if (m_fits) path.copy(m_text, path.size());
    }

    bool Fits() const { return m_fits; }
    const wchar_t* data() const { return m_text; }

private:
    wchar_t m_text[MAX_PATH] = {};
    bool m_fits;
};

void LogLastError(EnvironmentMessage message)
{
    const DWORD error = GetLastError();
    EnvironmentLog(message, 1)(L"%d", static_cast<int>(error));
}

// Deliberate: hidden files count, hidden and linked folders do not.
bool IsWalkedFolder(const WIN32_FIND_DATAW& entry)
{
    constexpr DWORD skipped = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_REPARSE_POINT;
    const std::wstring_view name = entry.cFileName;
    return (entry.dwFileAttributes & skipped) == 0 && name != L"." && name != L"..";
}

// The sum of the sizes of the files in `folder`. Its folders that are to be walked are added to
// `pending`.
std::uint64_t FileSizes(const std::wstring& folder, std::vector<std::wstring>& pending)
{
    WIN32_FIND_DATAW entry;
    const base::Find entries(FindFirstFileW((folder + L"\\*.*").c_str(), &entry));
    if (!entries) return 0;
    std::uint64_t total = 0;
    do {
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            total += (static_cast<std::uint64_t>(entry.nFileSizeHigh) << 32) + entry.nFileSizeLow;
        else if (IsWalkedFolder(entry))
            pending.push_back(folder + L"\\" + entry.cFileName);
    } while (FindNextFileW(entries.get(), &entry));
    return total;
}

} // namespace

int utilsExam::CreateDirectoryW(const wchar_t* path)
try {
    if (!path || !*path) return 0;
    const std::wstring whole = NormalisedPath((std::wstring(path) + L"\\").c_str(), 3);
    const CurrentDirectoryScope scope;
    if (MakeDirectory(whole)) return 1;
    return MakeDirectoryWithParents(WithoutTrailingBackslash(whole)) ? 1 : 0;
} catch (const std::bad_alloc&) {
    return 0;
}

void utilsExam::RemoveDirectoryW(const wchar_t* path, int isAbsolute)
try {
    if (!path) return;
    const std::wstring current = isAbsolute ? L"" : CurrentDirectory();
    if (!isAbsolute && current.empty()) return; // too long for a path that the shell takes
    const std::wstring asked = isAbsolute ? path : current + L"\\" + path;
    const std::wstring folder = NormalisedPath(asked.c_str(), 2);
    if (!PathExists(folder)) return;

    const std::wstring list = WithoutTrailingBackslash(folder) + L'\0'; // c_str() adds the second
    SHFILEOPSTRUCTW operation = {};
    operation.wFunc = FO_DELETE;
    operation.pFrom = list.c_str();
    operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;
    if (::SHFileOperationW(&operation) != 0) LogLastError(messageDeleteFailed);
} catch (const std::bad_alloc&) { // nothing was deleted
}

__int64 utilsExam::GetDirectorySize(const CString& dir)
try {
    // A list and not a recursion, because a deep tree on the disk could exhaust the caller's stack.
    std::vector<std::wstring> pending{dir.GetString()};
    std::uint64_t total = 0;
    while (!pending.empty()) {
        const std::wstring folder = std::move(pending.back());
        pending.pop_back();
        total += FileSizes(folder, pending);
    }
    return static_cast<__int64>(total);
} catch (const std::bad_alloc&) {
    return 0;
}

int utilsExam::SHFileOperationW(unsigned int operation, const wchar_t* from, const wchar_t* to,
                                int silent, unsigned short flags, HWND owner,
                                const wchar_t* progressTitle, void* nameMappings)
try {
    constexpr unsigned short silentFlags =
        FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOCONFIRMMKDIR | FOF_NOERRORUI;
    const ShellPathBuffer source(WithoutTrailingBackslash(NormalisedPath(from, 1)));
    const ShellPathBuffer destination(WithoutTrailingBackslash(NormalisedPath(to, 1)));

    SHFILEOPSTRUCTW record = {};
    record.hwnd = owner;
    record.wFunc = operation;
    record.pFrom = source.data();
    record.pTo = to ? destination.data() : nullptr;
    record.fFlags = static_cast<FILEOP_FLAGS>(flags | (silent ? silentFlags : FOF_SIMPLEPROGRESS));
    record.hNameMappings = nameMappings;
    record.lpszProgressTitle = progressTitle;
    if (!source.Fits() || !destination.Fits())
        SetLastError(ERROR_FILENAME_EXCED_RANGE); // a path cut short would name another file
    else if (::SHFileOperationW(&record) == 0)
        return 1;
    LogLastError(messageShellOperationFailed);
    return 0;
} catch (const std::bad_alloc&) {
    return 0;
}
