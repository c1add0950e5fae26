#pragma once

#include <optional>

namespace utils_statics {

// The ways in which the nodes of a version resource are written.
enum class VersionLayout
{
    wide,  // in files of 32 and 64 bits: texts in UTF-16, a type in each node
    narrow // in files of 16 bits: texts in the ANSI code page, no types
};

// The layout of the version resource of an executable file, when the platform can be asked for it
// safely. In a damaged file the platform follows sizes and addresses wherever they lead. It is safe
// when everything that it reads on the way to the resource lies within the file, and at the same
// place in the file and in its image. There is no layout when that is not so or when there is no
// such file. A file without a version resource may still have a layout.
//
// `path` is searched for as the platform searches for the files that it loads.
std::optional<VersionLayout> LayoutOfVersionResource(const wchar_t* path) noexcept;

} // namespace utils_statics
