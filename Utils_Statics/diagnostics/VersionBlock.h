#pragma once

#include <cstddef>

namespace utils_statics {

// How the nodes of a version resource are written.
enum class VersionLayout
{
    wide,  // in files of 32 and 64 bits: texts in UTF-16, a type in each node
    narrow // in files of 16 bits: texts in the ANSI code page, no types
};

// Makes a version resource of `size` bytes, as the platform returns it, safe to query. The
// platform's own queries follow the lengths in the nodes wherever they lead, and a file may contain
// any. Afterwards every node lies within its parent, and its key and value lie within it. A node
// that is too long is cut. A list ends where a node is too short, and a node whose key does not end
// is not found. The length of a text is then the one up to its null.
//
// Clears everything and returns false when the root has no room for the fixed version information.
bool MendVersionBlock(unsigned char* block, std::size_t size, VersionLayout layout) noexcept;

} // namespace utils_statics
