#pragma once

namespace qor_utils {

// The reason why the file system cannot have a path, as a sentence without its subject ("is
// empty"); null for a possible path.
const wchar_t* PathFault(const wchar_t* path) noexcept;

} // namespace qor_utils
