#include "environment/PathText.h"

#include <shlwapi.h>

#include <algorithm>
#include <cwchar>

namespace utils_statics {

void ReplaceAll(std::wstring& text, wchar_t from, wchar_t to)
{
    std::replace(text.begin(), text.end(), from, to);
}

void RemoveAll(std::wstring& text, const std::wstring& part)
{
    for (auto found = text.find(part); found != std::wstring::npos; found = text.find(part, found))
        text.erase(found, part.size());
}

void CollapseBackslashes(std::wstring& path)
{
    std::size_t kept = 0;
    for (std::size_t next = 0; next < path.size(); ++next) {
        path[kept++] = path[next];
        if (path[next] == L'\\' && next + 1 < path.size() && path[next + 1] == L'\\') ++next;
    }
    path.resize(kept);
}

std::wstring NormalisedPath(const wchar_t* path, int passes)
{
    std::wstring normalised = OrEmpty(path);
    ReplaceAll(normalised, L'/', L'\\');
    for (int pass = 0; pass < passes; ++pass)
        CollapseBackslashes(normalised);
    return normalised;
}

void StripTrailingSeparators(std::wstring& path)
{
    while (!path.empty() && (path.back() == L'\\' || path.back() == L'/'))
        path.pop_back();
}

void EnsureTrailingBackslash(std::wstring& path)
{
    if (!path.empty() && path.back() != L'\\') path += L'\\';
}

PathBuffer::PathBuffer(const std::wstring& path)
{
    if (path.size() < MAX_PATH) path.copy(m_text, path.size());
}

std::wstring WithoutLastComponent(std::wstring path)
{
    // The platform only shortens the text, so any length is safe. After a final colon it may read
    // one character past the end, which must be a second zero.
    path.push_back(L'\0');
    PathRemoveFileSpecW(path.data());
    path.resize(std::wcslen(path.c_str()));
    return path;
}

std::wstring WithoutTrailingBackslash(std::wstring path)
{
    path.resize(std::wcslen(path.c_str()));
    PathRemoveBackslashW(path.data()); // it only shortens, so any length is safe
    path.resize(std::wcslen(path.c_str()));
    return path;
}

bool PathExists(const std::wstring& path)
{
    return PathFileExistsW(path.c_str()) != FALSE;
}

std::wstring CurrentDirectory()
{
    wchar_t buffer[MAX_PATH] = {};
    const DWORD length = GetCurrentDirectoryW(MAX_PATH, buffer);
    // A longer directory leaves the buffer undefined; the result is then the size needed.
    return length < MAX_PATH ? std::wstring(buffer, length) : std::wstring();
}

} // namespace utils_statics
