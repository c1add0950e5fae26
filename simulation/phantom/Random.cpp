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
    // A number from -1 to 1 has the variance 1/3.
    const double sum = Between(-1, 1) + Between(-1, 1) + Between(-1, 1) + Between(-1, 1);
    return static_cast<float>(sum * std::sqrt(3.0 / 8));
}

} // namespace simulation
