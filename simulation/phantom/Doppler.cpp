#include "Arithmetic.h"
#include "Receiver.h"

#include <phantom/Phantom.h>

#include <algorithm>
#include <complex>

// The spectrum of the blood that is in the sample volume: the sum of its echoes, pulse by pulse,
// and the periodogram of that sum under a Hann window.
namespace simulation {

namespace {

using Signal = std::vector<std::complex<double>>;

constexpr double signalPower = 100; // of a sample volume full of blood, where noise has 1
constexpr int wallBins = 5;         // next to velocity 0; a direction whose flow is slower has none
constexpr int windowBins = 2;       // by which the window widens the velocities
// The logarithm of how much likelier flow has to be than noise. It is large because neighbouring
// bins are not independent.
constexpr double leastLikelihood = 60;
constexpr double decibelsShown = 40;

bool Within(double value, double low, double high)
{
    return value >= low && value <= high;
}

bool IsValidGate(const DopplerGate& gate)
{
    return Within(gate.place.x, -1000, 1000) && Within(gate.place.y, -1000, 1000) &&
           Within(gate.beamAngle, -180, 180) && Within(gate.length, 0.1, 200) &&
           Within(gate.pulsePeriod, 20, 5000) && Within(gate.frequency, 1e6, 2e7) &&
           (gate.bins == 64 || gate.bins == 128 || gate.bins == 256);
}

// The discrete Fourier transform of 2^n values, by halves.
void Transform(Signal& signal)
{
    const std::size_t size = signal.size();
    if (size == 1) return;
    Signal even;
    Signal odd;
    for (std::size_t i = 0; i < size; i += 2) {
        even.push_back(signal[i]);
        odd.push_back(signal[i + 1]);
    }
    Transform(even);
    Transform(odd);
    for (std::size_t i = 0; i < size / 2; ++i) {
        const SineCosine turn = OfTurns(-static_cast<double>(i) / static_cast<double>(size));
        const double real = odd[i].real() * turn.cosine - odd[i].imag() * turn.sine;
        const double imaginary = odd[i].real() * turn.sine + odd[i].imag() * turn.cosine;
        signal[i] = {even[i].real() + real, even[i].imag() + imaginary};
        signal[i + size / 2] = {even[i].real() - real, even[i].imag() - imaginary};
    }
}

// The echoes of one sample volume.
class SampleVolume
{
public:
    SampleVolume(const Patient& patient, const DopplerGate& gate, int soundSpeed)
        : m_patient(patient),
          m_gate(gate), m_beam{OfDegrees(gate.beamAngle).sine, OfDegrees(gate.beamAngle).cosine},
          m_turnsPerMm(-2e-3 * gate.frequency / soundSpeed),
          m_width(patient.Spread().BeamWidth(DepthOf(patient, gate.place)))
    {
    }

    // Adds the echoes of the pulses that lie evenly round a time. The blood that is in the volume
    // at that time stays in it meanwhile, so that the spectrum shows velocities only and not how
    // long cells are seen.
    void AddBlood(Signal& signal, double time) const
    {
        const std::vector<Change> changes = ChangesRound(time, signal.size());
        const double travel = m_patient.Motion().Travel(time);
        const double radius = m_patient.Motion().Radius(time);
        for (const BloodCell& cell : m_patient.Blood()) {
            const PointMm place =
                m_patient.Place(m_patient.AlongAt(cell, travel), cell.across * radius);
            const PointMm offset{place.x - m_gate.place.x, place.y - m_gate.place.y};
            const double amplitude = AmplitudeAt(offset);
            if (amplitude <= 0) continue;
            const double start = Along(offset) * m_turnsPerMm;
            for (std::size_t pulse = 0; pulse < signal.size(); ++pulse) {
                const SineCosine phase = OfTurns(start + cell.velocity * changes[pulse].flow +
                                                 cell.across * changes[pulse].growth);
                signal[pulse] += std::complex(amplitude * phase.cosine, amplitude * phase.sine);
            }
        }
    }

private:
    // The phases of the blood have turned so far at a pulse: by the flow on the axis, and by the
    // growth of the vessel at its wall.
    struct Change
    {
        double flow;
        double growth;
    };
    std::vector<Change> ChangesRound(double time, std::size_t pulses) const
    {
        const VesselMotion& motion = m_patient.Motion();
        const double middle = (static_cast<double>(pulses) - 1) / 2;
        const double flow = Along(m_patient.Axis()) * m_turnsPerMm;
        const double growth = Along(m_patient.Normal()) * m_turnsPerMm;
        std::vector<Change> changes;
        for (std::size_t pulse = 0; pulse < pulses; ++pulse) {
            const double at =
                time + (static_cast<double>(pulse) - middle) * m_gate.pulsePeriod * 1e-6;
            changes.push_back({(motion.Travel(at) - motion.Travel(time)) * flow,
                               (motion.Radius(at) - motion.Radius(time)) * growth});
        }
        return changes;
    }

    static double DepthOf(const Patient& patient, PointMm place)
    {
        return patient.Grid().ToScan(place).sample * patient.Grid().SampleSize();
    }

    double Along(PointMm direction) const
    {
        return direction.x * m_beam.x + direction.y * m_beam.y;
    }

    // The amplitude of an echo: even along the volume's length, and fading to nothing at a beam
    // width on both sides.
    double AmplitudeAt(PointMm offset) const
    {
        const double aside = (offset.x * m_beam.y - offset.y * m_beam.x) / m_width;
        if (!(std::abs(Along(offset)) <= m_gate.length / 2) || aside * aside >= 1) return 0;
        const double fading = 1 - aside * aside;
        const double cells = m_patient.Density() * m_gate.length * m_width;
        return fading * fading * std::sqrt(signalPower / cells);
    }

    const Patient& m_patient;
    const DopplerGate m_gate;
    const PointMm m_beam;
    const double m_turnsPerMm; // the phase of a depth
    const double m_width;
};

// The power of each bin, where noise has about 1. There are twice as many bins as pulses: they show
// the spectrum between those that the pulses resolve.
std::vector<float> Periodogram(Signal signal)
{
    const std::size_t pulses = signal.size();
    const std::size_t bins = 2 * pulses;
    for (std::size_t i = 0; i < pulses; ++i) {
        const double place = (static_cast<double>(i) + 0.5) / static_cast<double>(pulses);
        signal[i] *= (1 - OfTurns(place).cosine) / std::sqrt(1.5 * static_cast<double>(pulses));
    }
    signal.resize(bins);
    Transform(signal);
    std::vector<float> power;
    for (std::size_t bin = 0; bin < bins; ++bin) {
        const std::complex<double> value = signal[(bin + pulses) % bins];
        power.push_back(
            static_cast<float>(value.real() * value.real() + value.imag() * value.imag()));
    }
    return power;
}

// The powers of one direction of a spectrum, from velocity 0 on.
std::vector<double> PowersOf(const std::vector<float>& power, int direction)
{
    const auto zero = static_cast<std::ptrdiff_t>(power.size() / 2);
    std::vector<double> powers;
    for (std::ptrdiff_t bin = 0; bin < zero; ++bin)
        powers.push_back(power[static_cast<std::size_t>(zero + direction * bin)]);
    return powers;
}

// The powers of a periodogram are distributed exponentially: about 1 in noise, about a larger mean
// in the velocities of the blood, which are those up to the envelope. The envelope is the bin for
// which this is the likeliest, or 0.
int EnvelopeOf(const std::vector<double>& powers)
{
    int envelope = 0;
    double best = leastLikelihood;
    double sum = 0;
    for (int bin = wallBins; bin < static_cast<int>(powers.size()); ++bin) {
        sum += powers[static_cast<std::size_t>(bin)];
        const double count = bin - wallBins + 1;
        if (sum <= count) continue;
        const double likelihood = sum - count - count * Logarithm(sum / count);
        if (likelihood <= best) continue;
        best = likelihood;
        envelope = bin - windowBins;
    }
    return envelope;
}

// The mean bin of the power up to the envelope.
int MeanOf(const std::vector<double>& powers, int envelope)
{
    if (envelope == 0) return 0;
    double sum = 0;
    double moment = 0;
    for (int bin = 0; bin <= envelope; ++bin) {
        sum += powers[static_cast<std::size_t>(bin)];
        moment += powers[static_cast<std::size_t>(bin)] * bin;
    }
    return static_cast<int>(RoundToWhole(moment / sum));
}

void SetTraces(Spectrum& spectrum, std::size_t column, const std::vector<float>& power)
{
    const auto columns = static_cast<std::size_t>(spectrum.columns);
    for (const int direction : {1, -1}) {
        const std::vector<double> powers = PowersOf(power, direction);
        const int envelope = EnvelopeOf(powers);
        const int zero = spectrum.bins / 2;
        const std::size_t first = column + (direction > 0 ? 0 : columns);
        spectrum.traces[first] = static_cast<unsigned char>(zero + direction * envelope);
        spectrum.traces[first + 2 * columns] =
            static_cast<unsigned char>(zero + direction * MeanOf(powers, envelope));
    }
}

// Noise of the mean power 1.
Signal NoiseOf(Random random, int pulses)
{
    Signal signal;
    for (int pulse = 0; pulse < pulses; ++pulse) {
        const float real = random.Noise();
        signal.emplace_back(real, random.Noise());
    }
    return signal;
}

unsigned char SpectralLevel(float power)
{
    const double share = DecibelsOf(std::max(power, 1.0f)) / decibelsShown;
    return static_cast<unsigned char>(RoundToWhole(std::min(share, 1.0) * 255));
}

} // namespace

Spectrum Phantom::Doppler(const DopplerGate& gate, double start, int columns,
                          double columnsPerSecond) const
{
    if (!m_patient || !IsValidGate(gate) || !Within(columns, 1, 100000) ||
        !Within(columnsPerSecond, 1e-3, 1e5) || !IsTime(start) ||
        !IsTime(start + columns / columnsPerSecond))
        return {};
    const int soundSpeed = m_settings.acquisition.soundSpeed;
    Spectrum spectrum;
    spectrum.columns = columns;
    spectrum.bins = gate.bins;
    spectrum.velocityPerBin =
        soundSpeed * 1e6 / gate.pulsePeriod / (2.0 * gate.frequency) / gate.bins;
    spectrum.traces.resize(4 * static_cast<std::size_t>(columns));
    const SampleVolume volume(*m_patient, gate, soundSpeed);
    for (int column = 0; column < columns; ++column) {
        const double time = start + column / columnsPerSecond;
        Signal signal = NoiseOf(Random(m_settings.seed, time), gate.bins / 2);
        volume.AddBlood(signal, time);
        const std::vector<float> power = Periodogram(std::move(signal));
        SetTraces(spectrum, static_cast<std::size_t>(column), power);
        spectrum.power.insert(spectrum.power.end(), power.begin(), power.end());
        std::transform(power.begin(), power.end(), std::back_inserter(spectrum.levels),
                       SpectralLevel);
    }
    return spectrum;
}

DopplerGate Phantom::DefaultGate() const
{
    DopplerGate gate;
    if (!m_patient) return gate;
    constexpr double steering = 20;
    constexpr double spanUsed = 0.8; // by the fastest flow
    gate.place = m_settings.vessel.centre;
    gate.beamAngle = m_settings.acquisition.probe == ProbeShape::linear
                         ? std::copysign(steering, m_settings.vessel.tilt)
                         : m_patient->Grid().LineAngle(gate.place) / std::numbers::pi * 180;
    const double cosine = std::abs(CosineOfBeam(gate));
    gate.length = std::min(1.3 * 2 * m_patient->Motion().LargestRadius() /
                               std::sqrt(std::max(1 - cosine * cosine, 1e-4)),
                           200.0);
    gate.frequency = std::max(static_cast<int>(m_settings.frequency / 1.5), 1000000);
    const double fastest = cosine * std::max(std::abs(m_settings.vessel.peakVelocity),
                                             std::abs(m_settings.vessel.restingVelocity));
    const double period = spanUsed * m_settings.acquisition.soundSpeed * 1e6 /
                          (4.0 * gate.frequency * std::max(fastest, 1e-3));
    gate.pulsePeriod = static_cast<int>(std::clamp(period, 50.0, 300.0));
    return gate;
}

double Phantom::CosineOfBeam(const DopplerGate& gate) const
{
    if (!m_patient) return 0;
    const SineCosine beam = OfDegrees(gate.beamAngle);
    return -(m_patient->Axis().x * beam.sine + m_patient->Axis().y * beam.cosine);
}

} // namespace simulation
