#pragma once

#include <cstddef>

namespace utils_statics {

// Whether the nodes of a version resource, as the platform hands it out, all lie within their
// block. The platform's own queries follow the lengths that the nodes name, wherever they lead, and
// a file may name any.
bool IsSoundVersionBlock(const unsigned char* block, std::size_t size) noexcept;

} // namespace utils_statics
