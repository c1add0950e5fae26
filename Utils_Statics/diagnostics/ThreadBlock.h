#pragma once

#include <windows.h>

namespace utils_statics {

// The platform's record of the current thread: the bounds of its stack and, on x86, the list of the
// handlers in force.
inline NT_TIB& ThreadBlock() noexcept
{
    // The compiler mistakes an offset from the segment for an address near null.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
    return *reinterpret_cast<NT_TIB*>(NtCurrentTeb());
#pragma GCC diagnostic pop
}

} // namespace utils_statics
