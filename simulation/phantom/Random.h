#pragma once

#include <cstdint>
#include <random>

namespace simulation {

// Random numbers that are the same on every platform, which the distributions of the standard
// library need not be.
class Random
{
public:
    explicit Random(std::uint32_t seed) : m_engine(seed) {}
    // Numbers of their own for each moment of each phantom.
    Random(std::uint32_t seed, double time);

    std::uint32_t Bits() { return static_cast<std::uint32_t>(m_engine()); }
    double Between(double low, double high)
    {
        return low + (Bits() + 0.5) / 4294967296.0 * (high - low);
    }
    // A number of mean 0 and variance 1/2, nearly normal: a half of a complex noise of power 1.
    float Noise();

private:
    std::mt19937 m_engine;
};

} // namespace simulation
