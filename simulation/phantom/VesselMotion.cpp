#include "VesselMotion.h"

#include "Arithmetic.h"

namespace simulation {

namespace {

// A beat is one pulse and a smaller one when the aortic valve has closed. The shape of each is
// cos^8, whose Fourier series ends after the fourth harmonic.
constexpr double dicroticDelay = 0.4; // beats after systole
constexpr double dicroticHeight = 0.25;
constexpr double radiusDelay = 0.04; // the vessel is widest shortly after the blood is fastest
constexpr double harmonics[] = {35.0 / 128, 56.0 / 128, 28.0 / 128, 8.0 / 128, 1.0 / 128};

constexpr double Bump(double beats)
{
    const double cosine = OfTurns(beats / 2).cosine;
    const double square = cosine * cosine;
    return square * square * square * square;
}

// The integral of Bump from 0 on.
double BumpSum(double beats)
{
    double sum = harmonics[0] * beats;
    for (int n = 1; n <= 4; ++n)
        sum += harmonics[n] * OfTurns(n * beats).sine / (2 * std::numbers::pi * n);
    return sum;
}

// 1 at its peak, which lies at 0.
constexpr double peak = 1 + dicroticHeight * Bump(dicroticDelay);

double Pulse(double beats)
{
    return (Bump(beats) + dicroticHeight * Bump(beats - dicroticDelay)) / peak;
}

double PulseSum(double beats)
{
    return (BumpSum(beats) + dicroticHeight * BumpSum(beats - dicroticDelay)) / peak;
}

} // namespace

VesselMotion::VesselMotion(const PhantomSettings& settings)
    : m_beatsPerSecond(settings.heartRate / 60), m_radius(settings.vessel.diameter / 2),
      m_growth(m_radius * settings.vessel.pulsation), m_resting(settings.vessel.restingVelocity),
      m_rise(settings.vessel.peakVelocity - m_resting)
{
}

double VesselMotion::Radius(double time) const
{
    return m_radius + m_growth * Pulse(time * m_beatsPerSecond - systole - radiusDelay);
}

double VesselMotion::Velocity(double time) const
{
    return m_resting + m_rise * Pulse(time * m_beatsPerSecond - systole);
}

double VesselMotion::Travel(double time) const
{
    const double pulses = PulseSum(time * m_beatsPerSecond - systole) - PulseSum(-systole);
    return (m_resting * time + m_rise * pulses / m_beatsPerSecond) * 1000;
}

double VesselMotion::MeanVelocity() const
{
    return m_resting + m_rise * harmonics[0] * (1 + dicroticHeight) / peak;
}

} // namespace simulation
