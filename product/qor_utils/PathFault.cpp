#include "PathFault.h"

#include <windows.h>

#include <cwchar>

namespace qor_utils {
namespace {

constexpr wchar_t longPathPrefix[] = L"\\\\?\\";
constexpr std::size_t longPathPrefixLength = 4;

bool IsLetter(wchar_t c)
{
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

bool IsForbidden(wchar_t c)
{
    return c < L' ' || std::wcschr(L"<>\"|?*", c) != nullptr;
}

} // namespace

const wchar_t* PathFault(const wchar_t* path) noexcept
{
    if (!path || !*path) return L"is empty";
    if (std::wcsncmp(path, longPathPrefix, longPathPrefixLength) == 0)
        path += longPathPrefixLength;
    else if (wcsnlen(path, MAX_PATH) >= MAX_PATH)
        return L"is too long";
    if (IsLetter(path[0]) && path[1] == L':') path += 2;
    for (; *path; ++path) {
        if (IsForbidden(*path) || *path == L':') return L"holds a character that no file name can";
    }
    return nullptr;
}

} // namespace qor_utils
