#pragma once

#include "diagnostics/VersionBlock.h"

#include <optional>

namespace utils_statics {

// The layout of the version resource of an executable file, as far as the platform can be asked for
// it: in a file that is damaged it follows sizes and addresses wherever they lead. All that it
// looks at on the way to the resource lies within the file then, and at the same place in the file
// and in its image. Nothing where that is not so, and where there is no such file. A file without a
// version resource may have a layout nevertheless.
//
// `path` is searched for as the platform does with the files that it loads.
std::optional<VersionLayout> LayoutOfVersionResource(const wchar_t* path) noexcept;

} // namespace utils_statics
