#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace test_support
{

// The whole file; empty when it cannot be read. Files that somebody is still writing are read too.
std::vector<std::uint8_t> readBytes(const std::wstring& path);

// Creates or replaces the file; false when that fails.
bool writeBytes(const std::wstring& path, const std::vector<std::uint8_t>& bytes);

// A little-endian 32-bit number inside bytes; 0xDEADBEEF when the offset is outside.
std::uint32_t wordAt(const std::vector<std::uint8_t>& bytes, std::size_t offset);

} // namespace test_support
