#include "Random.h"

#include <bit>
#include <cmath>

namespace simulation {

Random::Random(std::uint32_t seed, double time)
{
    const auto bits = std::bit_cast<std::uint64_t>(time + 0.0); // one zero, not two
    std::seed_seq sequence{seed, static_cast<std::uint32_t>(bits),
                           static_cast<std::uint32_t>(bits >> 32)};
    m_engine.seed(sequence);
}

float Random::Noise()
{
    double sum = 0;
    for (int i = 0; i < 4; ++i)
        sum += Between(-1, 1); // of the variance 1/3
    return static_cast<float>(sum * std::sqrt(3.0 / 8));
}

} // namespace simulation
