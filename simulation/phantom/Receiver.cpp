#include "Receiver.h"

#include "Arithmetic.h"

#include <algorithm>
#include <bit>

namespace simulation {

namespace {

constexpr double headroom = 28;                // from the mean power of tissue to white, dB
constexpr double fluidAttenuation = 0.1;       // of blood and cyst, as a share of the tissue's
constexpr std::uint32_t noiseStarts = 0x10000; // places of the noise at which a line may begin

} // namespace

Receiver::Receiver(const PhantomSettings& settings, const Patient& patient)
    : m_lines(settings.acquisition.lines), m_samples(settings.acquisition.samples),
      m_seed(settings.seed), m_restingField(m_lines, m_samples)
{
    for (const Echo& echo : patient.RestingEchoes())
        m_restingField.Add(echo, patient.Spread());
    MakeGains(settings, patient);
    MakeNoise(settings, patient);
    MakeLevels(settings.dynamicRange);
}

// The gain compensates the attenuation of tissue, so what lies behind fluid is brighter.
void Receiver::MakeGains(const PhantomSettings& settings, const Patient& patient)
{
    const double sampleSize = patient.Grid().SampleSize();
    const double lossPerSample = // on the way there and back
        2 * settings.attenuation * (settings.frequency / 1e6) * (sampleSize / 10);
    std::vector<double> gains;
    for (int sample = 0; sample < m_samples; ++sample) {
        gains.push_back(std::min(lossPerSample * sample, settings.gainLimit));
        m_noiseGain.push_back(static_cast<float>(AmplitudeOf(settings.noiseLevel + gains.back())));
    }
    for (int line = 0; line < m_lines; ++line) {
        double loss = 0;
        for (int sample = 0; sample < m_samples; ++sample) {
            m_echoGain.push_back(
                static_cast<float>(AmplitudeOf(gains[static_cast<std::size_t>(sample)] - loss)));
            const PointMm place = patient.Grid().ToPoint({1.0 * line, 1.0 * sample});
            loss += patient.IsFluid(place) ? fluidAttenuation * lossPerSample : lossPerSample;
        }
    }
}

// The receiver lets through the band of the pulse, so its noise is as coarse as the echoes are.
void Receiver::MakeNoise(const PhantomSettings& settings, const Patient& patient)
{
    const PointSpread::Taps pulse = patient.Spread().Pulse(0);
    Random random(settings.seed ^ 0x6e6f6973u);
    std::vector<float> white;
    for (std::size_t i = 0; i < 2 * (noiseStarts + 2048); ++i)
        white.push_back(random.Noise());
    for (std::size_t i = 0; i < 2 * (noiseStarts + 1024); ++i) {
        float sum = 0;
        for (std::size_t tap = 0; tap < PointSpread::pulseTaps; ++tap)
            sum += pulse.weights[tap] * white[i + 2 * tap];
        m_noise.push_back(sum);
    }
}

void Receiver::MakeLevels(double dynamicRange)
{
    for (std::uint32_t i = 0; i < m_levels.size(); ++i) {
        const auto power = static_cast<double>(std::bit_cast<float>((i << 16) + 0x8000));
        const bool isNumber = i < 0x7f80;
        const double share = isNumber ? (DecibelsOf(power) - headroom) / dynamicRange + 1 : 1;
        m_levels[i] = static_cast<unsigned char>(RoundToWhole(std::clamp(share, 0.0, 1.0) * 255));
    }
}

unsigned char Receiver::LevelOf(float power) const
{
    return m_levels[std::bit_cast<std::uint32_t>(power) >> 16];
}

std::vector<unsigned char> Receiver::Develop(const EchoField& field, double time) const
{
    Random random(m_seed, time);
    std::vector<unsigned char> frame;
    frame.reserve(m_echoGain.size());
    const float* gain = m_echoGain.data();
    for (int line = 0; line < m_lines; ++line) {
        const float* echo = field.Line(line);
        const float* noise = &m_noise[2 * static_cast<std::size_t>(random.Bits() % noiseStarts)];
        for (const float noiseGain : m_noiseGain) {
            const float real = *gain * echo[0] + noiseGain * noise[0];
            const float imaginary = *gain * echo[1] + noiseGain * noise[1];
            frame.push_back(LevelOf(real * real + imaginary * imaginary));
            ++gain;
            echo += 2;
            noise += 2;
        }
    }
    return frame;
}

} // namespace simulation
