#pragma once

#include <base/Owner.h>

#include <cstdio>

namespace base {

/// Owns a result of _wfopen. A caller that has to know whether closing succeeded closes the
/// released stream itself.
struct StdFileTraits
{
    using Handle = std::FILE*;
    static std::FILE* Empty() noexcept { return nullptr; }
    static void Release(std::FILE* file) noexcept { std::fclose(file); }
};
using StdFile = Owner<StdFileTraits>;

} // namespace base
