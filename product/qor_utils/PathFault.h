#pragma once

namespace qor_utils {

// Why a path can be none of the file system's, as a sentence without its subject ("is empty"); null
// when it can.
const wchar_t* PathFault(const wchar_t* path) noexcept;

} // namespace qor_utils
