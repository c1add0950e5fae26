#pragma once

#include "diagnostics/VersionFile.h"

#include <cstddef>

namespace utils_statics {

// Makes the nodes of a version resource safe to follow, in `size` bytes at `block` as a file has
// them. VersionReader::Read states what holds afterwards. False, with all bytes cleared, when the
// root has no room for the fixed version information.
bool MendVersionNodes(unsigned char* block, std::size_t size, VersionLayout layout) noexcept;

} // namespace utils_statics
