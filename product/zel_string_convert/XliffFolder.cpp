#include "XliffFile.h"

#include <base/Handles.h>

#include <algorithm>
#include <cwchar>

namespace zel_string_convert {
namespace {

// The pattern "*.xlf" would also find "a.xlf~" on volumes with short names.
bool IsXliffFile(const WIN32_FIND_DATAW& entry)
{
    const wchar_t* extension = std::wcsrchr(entry.cFileName, L'.');
    if (!extension || (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) return false;
    return _wcsicmp(extension, L".xlf") == 0 || _wcsicmp(extension, L".xliff") == 0;
}

std::vector<std::wstring> XliffFilesIn(const std::wstring& folder)
{
    std::vector<std::wstring> files;
    WIN32_FIND_DATAW entry;
    const base::Find find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    if (!find) return files;
    do {
        if (IsXliffFile(entry)) files.push_back(folder + L"\\" + entry.cFileName);
    } while (FindNextFileW(find.get(), &entry));
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

std::vector<std::wstring> XliffFilesAt(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return {};
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) return {path};
    return XliffFilesIn(path);
}

} // namespace zel_string_convert
