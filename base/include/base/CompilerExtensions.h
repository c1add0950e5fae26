#pragma once

// This header holds what the compiler at hand knows and the language does not. No other source
// names such a thing, so another compiler needs its own words here and nowhere else.

// Keeps a function from being inlined. The mark stands before the declaration.
#define BASE_NEVER_INLINED [[gnu::noinline]]

// Tell the place of the call when they are default arguments. std::source_location would tell it
// too, but the checkers of the sources do not know it.
#define BASE_CALLERS_LINE __builtin_LINE()
#define BASE_CALLERS_FILE __builtin_FILE()
#define BASE_CALLERS_FUNCTION __builtin_FUNCTION()

// The compiler's setjmp and longjmp. They save a place of a running function (0 is the result) and
// go on there later (the result is another one). Unlike those of the C library they unwind nothing
// and call nothing, so they also serve where the stack or the heap is damaged. The function must
// not be inlined: the place lies in its frame, which has to stay.
#define BASE_SAVE_PLACE(place) __builtin_setjmp(place)
#define BASE_GO_ON_AT(place) __builtin_longjmp(place, 1)

// The lines between them read memory at an offset from a segment's start. The compiler mistakes it
// for an address near null, and would warn.
#define BASE_TRUST_SEGMENT_OFFSETS_BEGIN                                                           \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Warray-bounds\"")
#define BASE_TRUST_SEGMENT_OFFSETS_END _Pragma("GCC diagnostic pop")

namespace base {

// A place that BASE_SAVE_PLACE fills.
using SavedPlace = void* [5];

// An instruction that no processor knows.
[[noreturn]] inline void ExecuteIllegalInstruction() noexcept
{
    __builtin_trap();
}

} // namespace base
