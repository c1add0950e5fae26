#pragma once

// 32-bit arithmetic on numbers that come from outside: sums and products wrap around like the
// processor's, and real numbers become integers without undefined behaviour.

#include <algorithm>
#include <cstdint>
#include <limits>

namespace base::wrap {

constexpr int Add(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}
constexpr int Subtract(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) - static_cast<unsigned int>(b));
}
constexpr int Multiply(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) * static_cast<unsigned int>(b));
}

/// The quotient a / b, rounded towards zero. A division by 0 gives 0, and the one quotient that
/// does not fit wraps around.
constexpr int Divide(int a, int b)
{
    if (b == 0) return 0;
    return b == -1 ? Subtract(0, a) : a / b;
}

/// The nearest number that an int can hold.
constexpr int Saturate(std::int64_t value)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

/// Rounds towards zero. A value beyond an int gives the nearest limit, and NaN gives 0.
constexpr int Truncate(double value)
{
    using Limits = std::numeric_limits<int>;
    if (value != value) return 0;
    if (value >= Limits::max()) return Limits::max();
    if (value <= Limits::min()) return Limits::min();
    return static_cast<int>(value);
}

} // namespace base::wrap
