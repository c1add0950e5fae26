#pragma once

#include "text/TextView.h"

#include <shlwapi.h>

#include <algorithm>
#include <string>

namespace utils_statics {

// Removes every occurrence of `part`, in one pass from the left.
inline void RemoveAll(std::wstring& text, const std::wstring& part)
{
    for (auto found = text.find(part); found != std::wstring::npos; found = text.find(part, found))
        text.erase(found, part.size());
}

// Turns each pair of backslashes into one, in one pass from the left without overlap: three become
// two. The two leading backslashes of a network path become one as well; network paths are not
// supported here.
inline void CollapseBackslashes(std::wstring& path)
{
    for (auto pair = path.find(L"\\\\"); pair != std::wstring::npos;
         pair = path.find(L"\\\\", pair + 1))
        path.erase(pair, 1);
}

// `path` (null is empty) with backslashes only, collapsed `passes` times.
inline std::wstring NormalisedPath(const wchar_t* path, int passes)
{
    std::wstring normalised = OrEmpty(path);
    std::replace(normalised.begin(), normalised.end(), L'/', L'\\');
    for (int pass = 0; pass < passes; ++pass)
        CollapseBackslashes(normalised);
    return normalised;
}

// True when there is a file or folder of this name.
inline bool PathExists(const std::wstring& path)
{
    return PathFileExistsW(path.c_str()) != FALSE;
}

} // namespace utils_statics
