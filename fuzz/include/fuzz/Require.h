#pragma once

#include <cstdio>
#include <cstdlib>

namespace fuzz {

/// Ends the program, as a crash would, when something does not hold that has to hold for every
/// input.
inline void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::fflush(stderr);
    std::abort();
}

} // namespace fuzz
