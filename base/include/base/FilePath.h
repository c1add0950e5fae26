#pragma once

#include <windows.h>

#include <string>

namespace base {

/// The present absolute form of `path`, of any length. Empty for a null or empty path, for one that
/// has no absolute form, and when another thread sets a longer current directory during the call.
inline std::wstring FullPath(const wchar_t* path)
{
    if (!path || !*path) return {};
    const DWORD needed = GetFullPathNameW(path, 0, nullptr, nullptr);
    std::wstring full(needed, L'\0');
    const DWORD length = needed ? GetFullPathNameW(path, needed, full.data(), nullptr) : 0;
    full.resize(length < needed ? length : 0); // a longer directory was set between the calls
    return full;
}

/// `path` without the slashes and backslashes at its end.
inline std::wstring WithoutTrailingSeparators(std::wstring path)
{
    path.resize(path.find_last_not_of(L"\\/") + 1); // npos + 1 is 0
    return path;
}

/// `path` with a backslash at its end; an empty one stays empty.
inline std::wstring WithTrailingBackslash(std::wstring path)
{
    if (!path.empty() && path.back() != L'\\') path += L'\\';
    return path;
}

/// The file name of a module, of any length; null means the running program. Empty when the
/// platform cannot tell.
inline std::wstring ModuleFile(HMODULE module)
{
    constexpr std::size_t longestPath = 32768;
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto size = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(module, path.data(), size);
        if (length < size) {
            path.resize(length);
            return path;
        }
        if (path.size() >= longestPath) return {};
        path.resize(path.size() * 2);
    }
}

} // namespace base
