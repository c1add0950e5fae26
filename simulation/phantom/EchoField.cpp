#include "EchoField.h"

#include "Arithmetic.h"

#include <algorithm>
#include <array>

namespace simulation {

namespace {

constexpr double widthPerSigma = 2.3548200450309493; // of a Gaussian, at half of its height
constexpr double wavelengthsPerPulse = 1.2;
constexpr double smallestFNumber = 2;

} // namespace

PointSpread::PointSpread(const PhantomSettings& settings, const ScanGrid& grid)
    : m_wavelength(settings.acquisition.soundSpeed * 1000.0 / settings.frequency),
      m_aperture(settings.aperture),
      // The samples have to show the pulse, and its taps have to hold it.
      m_pulseLength(std::clamp(wavelengthsPerPulse * m_wavelength, 1.5 * grid.SampleSize(),
                               6 * grid.SampleSize())),
      m_zonesPerSample(static_cast<double>(zones) / settings.acquisition.samples)
{
    AddTaps(m_pulse, m_pulseLength / grid.SampleSize(), pulseTaps);
    for (int zone = 0; zone < zones; ++zone) {
        const double depth = (zone + 0.5) / m_zonesPerSample * grid.SampleSize();
        const double width = std::clamp(BeamWidth(depth) / grid.LineSpacing(depth), 1.5, 24.0);
        const int taps = 2 * static_cast<int>(1.3 * width + 1);
        m_zones.push_back({taps, m_beams.size()});
        AddTaps(m_beams, width, taps);
    }
}

// A focused aperture resolves the wavelength times the f-number. Its size is what limits it far
// away, and the opening of its elements near the face.
double PointSpread::BeamWidth(double depth) const
{
    return m_wavelength * std::max(smallestFNumber, depth / m_aperture);
}

// Adds the weights of a Gaussian of this width, in grid steps, for each place between two of them.
void PointSpread::AddTaps(std::vector<float>& to, double width, int count) const
{
    const double sigma = width / widthPerSigma;
    for (int place = 0; place < places; ++place) {
        std::vector<double> weights;
        double energy = 0;
        for (int tap = 0; tap < count; ++tap) {
            const double distance = (tap - count / 2 + 1 - (place + 0.5) / places) / sigma;
            weights.push_back(Exponential(-distance * distance / 2));
            energy += weights.back() * weights.back();
        }
        for (const double weight : weights)
            to.push_back(static_cast<float>(weight / std::sqrt(energy)));
    }
}

PointSpread::Taps PointSpread::Pulse(double sample) const
{
    const double whole = WholeBelow(sample);
    const int place = static_cast<int>((sample - whole) * places);
    return {static_cast<int>(whole) - pulseTaps / 2 + 1, pulseTaps,
            &m_pulse[static_cast<std::size_t>(place * pulseTaps)]};
}

PointSpread::Taps PointSpread::Beam(double line, double sample) const
{
    const double inside = std::clamp(sample * m_zonesPerSample, 0.0, zones - 1.0);
    const Zone zone = m_zones[static_cast<std::size_t>(inside)];
    const double whole = WholeBelow(line);
    const int place = static_cast<int>((line - whole) * places);
    return {static_cast<int>(whole) - zone.taps / 2 + 1, zone.taps,
            &m_beams[zone.begin + static_cast<std::size_t>(place * zone.taps)]};
}

EchoField::EchoField(int lines, int samples)
    : m_lines(lines), m_samples(samples),
      m_stride(2 * static_cast<std::size_t>(samples + 2 * margin)),
      m_values(m_stride * static_cast<std::size_t>(lines))
{
}

void EchoField::Add(const Echo& echo, const PointSpread& spread)
{
    constexpr double reach = 64; // lines; more than half of the widest beam
    if (!(echo.sample > -margin / 2 && echo.sample < m_samples + margin / 2)) return;
    if (!(echo.line > -reach && echo.line < m_lines + reach)) return;
    const PointSpread::Taps pulse = spread.Pulse(echo.sample);
    const PointSpread::Taps beam = spread.Beam(echo.line, echo.sample);
    std::array<float, 2 * PointSpread::pulseTaps> wave;
    for (std::size_t tap = 0; tap < PointSpread::pulseTaps; ++tap) {
        wave[2 * tap] = pulse.weights[tap] * echo.real;
        wave[2 * tap + 1] = pulse.weights[tap] * echo.imaginary;
    }
    const int begin = std::max(0, -beam.first);
    const int end = std::min(beam.count, m_lines - beam.first);
    for (int tap = begin; tap < end; ++tap) {
        float* const to = &m_values[m_stride * static_cast<std::size_t>(beam.first + tap) +
                                    2 * static_cast<std::size_t>(pulse.first + margin)];
        const float weight = beam.weights[tap];
        for (std::size_t i = 0; i < wave.size(); ++i)
            to[i] += weight * wave[i];
    }
}

const float* EchoField::Line(int line) const
{
    return &m_values[m_stride * static_cast<std::size_t>(line) + 2 * margin];
}

} // namespace simulation
