#include "record/MovieTarget.h"

#include "base/FileReader.h"

#include <base/FilePath.h>
#include <base/FileReplacement.h>

#include <windows.h>

namespace exam {

namespace {

// True when the code page has all characters of a text.
bool IsInCodePage(const std::wstring& text)
{
    if (GetACP() == CP_UTF8) return true;
    BOOL replaced = FALSE;
    const int length =
        WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(),
                            static_cast<int>(text.size()), nullptr, 0, nullptr, &replaced);
    return length > 0 && !replaced;
}

std::wstring ShortPath(const std::wstring& path)
{
    std::wstring result(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    const auto size = static_cast<DWORD>(result.size());
    const DWORD length = GetShortPathNameW(path.c_str(), result.data(), size);
    result.resize(length < size ? length : 0);
    return result;
}

std::wstring FolderOf(const std::wstring& fullPath)
{
    return fullPath.substr(0, fullPath.find_last_of(L"\\/") + 1);
}

// A path in `folder` that no file has yet.
std::wstring UnusedPath(const std::wstring& folder)
{
    const std::wstring stem = folder + L"exam-" + std::to_wstring(GetCurrentProcessId()) + L"-";
    for (int number = 1;; ++number) {
        std::wstring path = stem + std::to_wstring(number) + L".avi";
        if (KindOfFile(path) == FileKind::missing) return path;
    }
}

} // namespace

std::optional<std::wstring> CodePagePath(const std::wstring& path)
{
    if (IsInCodePage(path)) return path;
    std::wstring alternative = ShortPath(path);
    if (alternative.empty() || !IsInCodePage(alternative)) return {};
    return alternative;
}

MovieTarget::~MovieTarget()
{
    if (!m_writingPath.empty()) DeleteFileW(m_writingPath.c_str());
}

std::wstring MovieTarget::Choose(const std::wstring& path, bool overwrite)
{
    m_path = base::FullPath(path.c_str());
    m_overwrite = overwrite;
    const std::wstring folder = FolderOf(m_path);
    if (KindOfFile(folder) != FileKind::folder) return L"there is no folder " + folder;
    const FileKind kind = KindOfFile(m_path);
    if (kind == FileKind::folder || kind == FileKind::device) return FindFileProblem(m_path);
    if (kind == FileKind::file && !overwrite)
        return L"this file exists already; --overwrite replaces it";
    const auto writable = CodePagePath(folder);
    if (!writable)
        return L"the folder's name has characters that the system's code page does not have, and "
               L"no "
               L"short form; movies cannot be written there";
    m_writingPath = UnusedPath(*writable);
    return L"";
}

bool MovieTarget::PutInPlace()
{
    const bool inPlace = m_overwrite ? base::MoveOver(m_writingPath.c_str(), m_path.c_str())
                                     : MoveFileW(m_writingPath.c_str(), m_path.c_str());
    if (!inPlace) return false;
    m_writingPath.clear();
    return true;
}

} // namespace exam
