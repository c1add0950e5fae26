#pragma once

namespace framework {

/// Sums and differences of coordinates wrap around, like those of the platform's rectangle
/// functions; signed overflow would be undefined.
constexpr long WrappingAdd(long a, long b) noexcept
{
    return static_cast<long>(static_cast<unsigned long>(a) + static_cast<unsigned long>(b));
}

constexpr long WrappingSubtract(long a, long b) noexcept
{
    return static_cast<long>(static_cast<unsigned long>(a) - static_cast<unsigned long>(b));
}

} // namespace framework
