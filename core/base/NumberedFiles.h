#pragma once

#include <cwchar>
#include <filesystem>
#include <iterator>
#include <string>
#include <utility>

namespace exam {

/// Paths of files that are numbered from 1 on.
struct NumberedFiles
{
    std::wstring last; ///< the last file before the first free number; empty: there is none
    std::wstring next; ///< the path of the first free number
};

/// Looks for the numbered files of a folder. `name` is their name, with %03d or
/// %d for the number.
inline NumberedFiles FindNumbered(const std::wstring& folder, const wchar_t* name)
{
    NumberedFiles files;
    for (int number = 1;; ++number) {
        wchar_t file[32];
        std::swprintf(file, std::size(file), name, number);
        files.next = folder + L"\\" + file;
        std::error_code error;
        if (!std::filesystem::exists(files.next, error)) return files;
        files.last = std::move(files.next);
    }
}

} // namespace exam
