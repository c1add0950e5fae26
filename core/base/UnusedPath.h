#pragma once

#include "base/FileReader.h"

#include <string>

namespace exam {

/// A path that nothing has yet: the stem, this process, a number, and the ending. Files that are
/// not finished have such names, so that none of them is taken for a whole one.
inline std::wstring UnusedPath(const std::wstring& stem, const std::wstring& ending)
{
    const std::wstring own = stem + std::to_wstring(GetCurrentProcessId()) + L"-";
    constexpr int mostTries = 1000; // a folder that nothing may be asked of seems to have them all
    for (int number = 1;; ++number) {
        std::wstring path = own;
        path += std::to_wstring(number) += ending;
        if (number == mostTries || KindOfFile(path) == FileKind::missing) return path;
    }
}

} // namespace exam
