#include "service/RecentFiles.h"

#include <afxwin.h>

#include <algorithm>

namespace exam {

namespace {

constexpr wchar_t section[] = L"Recent";
constexpr std::size_t mostFiles = 9;

CString KeyOf(std::size_t index)
{
    CString key;
    key.Format(L"File%d", static_cast<int>(index + 1));
    return key;
}

} // namespace

std::vector<std::wstring> RecentFiles()
{
    std::vector<std::wstring> files;
    for (std::size_t i = 0; i < mostFiles; ++i) {
        const CString file = AfxGetApp()->GetProfileString(section, KeyOf(i), L"");
        if (!file.IsEmpty()) files.emplace_back(file);
    }
    return files;
}

void AddRecentFile(const std::wstring& path)
{
    std::vector<std::wstring> files = RecentFiles();
    std::erase(files, path);
    files.insert(files.begin(), path);
    files.resize(std::min(files.size(), mostFiles));
    for (std::size_t i = 0; i < files.size(); ++i)
        AfxGetApp()->WriteProfileString(section, KeyOf(i), files[i].c_str());
}

} // namespace exam
