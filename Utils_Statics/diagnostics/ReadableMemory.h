#pragma once

#include <cstddef>
#include <cstdint>

namespace utils_statics {

// Copies `size` bytes from any address of this process. False when not all of them can be read.
// Guard pages, such as those at the end of a stack, are not touched.
bool ReadMemory(std::uintptr_t address, void* out, std::size_t size) noexcept;

template <class Value>
bool ReadMemory(std::uintptr_t address, Value& out) noexcept
{
    return ReadMemory(address, &out, sizeof out);
}

} // namespace utils_statics
