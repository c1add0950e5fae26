#pragma once

#include <cwchar>
#include <filesystem>
#include <iterator>
#include <string>
#include <utility>

namespace exam {

/// The paths of numbered files.
struct NumberedFiles
{
    std::wstring last; ///< the last file before the first free number; empty: there is none
    std::wstring next; ///< the path of the first free number
    int number = 0;    ///< that number
};

/// Looks for the numbered files of a folder, from a number on. `name` is their name, with %03d or
/// %d for the number.
inline NumberedFiles FindNumbered(const std::wstring& folder, const wchar_t* name, int first = 1)
{
    NumberedFiles files;
    for (files.number = first;; ++files.number) {
        wchar_t file[32];
        std::swprintf(file, std::size(file), name, files.number);
        files.next = folder + L"\\" + file;
        std::error_code error;
        if (!std::filesystem::exists(files.next, error)) return files;
        files.last = std::move(files.next);
    }
}

} // namespace exam
