// utilsExam: directories, single files, drives and pixel bytes.
#include "Utils_Statics/utilsExam.h"

#include "environment/EnvironmentLog.h"
#include "environment/PathText.h"

#include <base/Folders.h>
#include <base/Handles.h>
#include <base/InFolder.h>

#include <shellapi.h>
#include <shlwapi.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

using namespace utils_statics;

namespace {

// `path`, of any length, without one backslash at its end. The root of a drive keeps its own.
std::wstring WithoutTrailingBackslash(std::wstring path)
{
    PathRemoveBackslashW(path.data()); // it only shortens, so any length is safe
    path.resize(std::wcslen(path.c_str()));
    return path;
}

// The component before the first backslash is never created by itself: it is a drive, or the first
// folder of a relative path.
bool MakeFoldersBehindTheFirst(const std::wstring& path)
{
    const std::size_t first = path.find(L'\\');
    return first != std::wstring::npos && base::MakeFolders(path, first + 1);
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

// The roots of all drives, each ended by a zero. One more zero ends the list.
std::vector<wchar_t> LogicalDriveRoots()
{
    std::vector<wchar_t> roots(1);
    DWORD length = GetLogicalDriveStringsW(0, nullptr);
    while (length >= roots.size()) { // repeats when a drive was added between the calls
        roots.assign(length + 1, L'\0');
        length = GetLogicalDriveStringsW(static_cast<DWORD>(roots.size()), roots.data());
    }
    return roots;
}

bool IsSystemDrive(const std::wstring& root)
{
    return root == L"C:\\" || root == L"D:\\" || root == L"A:\\" || root == L"B:\\";
}

// Fixed drives are accepted on purpose: external disks report as fixed.
bool IsExportDriveType(UINT type)
{
    return type == DRIVE_REMOVABLE || type == DRIVE_FIXED || type == DRIVE_RAMDISK;
}

} // namespace

int utilsExam::CreateDirectoryW(const wchar_t* path)
try {
    if (!path || !*path) return 0;
    const std::wstring whole = NormalisedPath((std::wstring(path) + L"\\").c_str(), 3);
    const base::InFolder unchanged(L".");
    if (_wmkdir(whole.c_str()) == 0) return 1;
    return MakeFoldersBehindTheFirst(WithoutTrailingBackslash(whole)) ? 1 : 0;
} catch (const std::bad_alloc&) {
    return 0;
}

void utilsExam::RemoveDirectoryW(const wchar_t* path, int isAbsolute)
try {
    if (!path) return;
    const std::wstring current = isAbsolute ? L"" : base::CurrentFolder();
    const bool isUsable = !current.empty() && current.size() < MAX_PATH; // the shell's longest path
    if (!isAbsolute && !isUsable) return;
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

int utilsExam::GetFileData(const wchar_t* path, WIN32_FIND_DATAW* data)
{
    if (!path || !data) return 0;
    return base::Find(FindFirstFileW(path, data)) ? 1 : 0;
}

bool utilsExam::CheckFileIsWritable(const wchar_t* path)
{
    const DWORD attributes = GetFileAttributesW(OrEmpty(path));
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0)
        return true;
    return SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL) != FALSE;
}

bool utilsExam::FindFirstRemovableDrive(CString& drive)
try {
    const std::vector<wchar_t> roots = LogicalDriveRoots();
    for (const wchar_t* next = roots.data(); *next;) {
        const std::wstring root = next;
        next += root.size() + 1;
        if (IsSystemDrive(root) || !IsExportDriveType(GetDriveTypeW(root.c_str()))) continue;
        drive = root.c_str();
        return true;
    }
    return false;
} catch (const std::bad_alloc&) {
    return false;
}

void utilsExam::BGRtoRGB(unsigned char* pixels, int width, int height)
{
    const std::int64_t count = static_cast<std::int64_t>(width) * height;
    // Only the product of the sizes counts. No buffer can hold more than the upper bound.
    if (!pixels || count < 1 || count > PTRDIFF_MAX / 3) return;
    for (std::ptrdiff_t at = 0; at < static_cast<std::ptrdiff_t>(count) * 3; at += 3)
        std::swap(pixels[at], pixels[at + 2]);
}
