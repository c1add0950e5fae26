#pragma once

#include "Patient.h"

#include <array>
#include <cstdint>
#include <vector>

namespace simulation {

// The receiver does what a scanner does with echoes: the gain over depth, its own noise, and the
// compression of amplitudes to grey levels.
class Receiver
{
public:
    Receiver(const PhantomSettings& settings, const Patient& patient);

    // The field of all that is at rest, to which the moving echoes of a frame are added.
    const EchoField& RestingField() const { return m_restingField; }

    // The frame of a field. The time chooses the noise.
    std::vector<unsigned char> Develop(const EchoField& field, double time) const;

    // The grey level of a power, where tissue has the mean power 1. Powers that differ by less
    // than 1/128 may have the same level.
    unsigned char LevelOf(float power) const;

private:
    void MakeGains(const PhantomSettings& settings, const Patient& patient);
    void MakeNoise(const PhantomSettings& settings, const Patient& patient);
    void MakeLevels(double dynamicRange);

    int m_lines;
    int m_samples;
    std::uint32_t m_seed;
    EchoField m_restingField;
    std::vector<float> m_echoGain;              // sample by sample and line by line
    std::vector<float> m_noiseGain;             // sample by sample
    std::vector<float> m_noise;                 // real and imaginary parts in turn
    std::array<unsigned char, 0x8000> m_levels; // by the upper half of a positive float
};

} // namespace simulation
