#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace base {

/// The bytes of the one file that there is: the one in memory (MemoryFile.h).
std::optional<std::string> ReadFileWhole(const wchar_t* path, std::size_t limit);

} // namespace base
