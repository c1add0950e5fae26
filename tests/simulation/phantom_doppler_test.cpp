// The spectrum of the flow and its traces against the truth.
#include "PhantomFrame.h"

#include <algorithm>

namespace simulation {

namespace {

enum Trace : std::size_t
{
    envelopeForward,
    envelopeReverse,
    meanForward,
    meanReverse,
};

// Holds what the traces say of the vessel: velocities along its axis towards the right, m/s.
class Traces
{
public:
    Traces(const Phantom& phantom, const DopplerGate& gate, double columnsPerSecond = 100)
        : m_spectrum(phantom.Doppler(gate, 0, columns, columnsPerSecond)),
          m_perBin(m_spectrum.velocityPerBin / phantom.CosineOfBeam(gate))
    {
    }

    double At(Trace trace, int column) const
    {
        const std::size_t at = trace * columns + static_cast<std::size_t>(column);
        return (m_spectrum.traces.at(at) - m_spectrum.bins / 2) * m_perBin;
    }
    double Most(Trace trace) const
    {
        double most = 0;
        for (int column = 0; column < columns; ++column)
            if (std::abs(At(trace, column)) > std::abs(most)) most = At(trace, column);
        return most;
    }
    // The lag, in columns, at which a trace is most like itself.
    int Period(Trace trace, int from, int to) const
    {
        double best = 1e9;
        int period = 0;
        for (int lag = from; lag <= to; ++lag) {
            double difference = 0;
            for (int column = 0; column + to < columns; ++column)
                difference += std::abs(At(trace, column + lag) - At(trace, column));
            if (difference < best) {
                best = difference;
                period = lag;
            }
        }
        return period;
    }
    const Spectrum& Whole() const { return m_spectrum; }

    static constexpr int columns = 250; // three beats

private:
    Spectrum m_spectrum;
    double m_perBin;
};

// A bin is 1 in 100 of the peak, and the window of a spectrum widens it by some.
TEST_P(PhantomTest, TheTracesShowPeakAndMeanVelocity)
{
    const Traces traces(m_phantom, m_phantom.DefaultGate());
    const double peak = m_settings.vessel.peakVelocity;
    EXPECT_NEAR(traces.Most(envelopeForward), peak, 0.04 * peak);
    EXPECT_NEAR(m_phantom.AxisVelocity(m_phantom.SystoleTime()), peak, 1e-6);
    EXPECT_EQ(traces.Most(envelopeReverse), 0);
    EXPECT_EQ(traces.Most(meanReverse), 0);
    double envelope = 0;
    double mean = 0;
    for (int column = 0; column < Traces::columns; ++column) {
        // The blood of a window moves while it is looked at, and one spectrum tells a mean to a
        // fifth of its velocities.
        const double truth = m_phantom.AxisVelocity(column / 100.0);
        EXPECT_NEAR(traces.At(envelopeForward, column), truth, 0.12 * peak) << column;
        EXPECT_NEAR(traces.At(meanForward, column), truth / 2, 0.2 * peak) << column;
        envelope += traces.At(envelopeForward, column) / Traces::columns;
        mean += traces.At(meanForward, column) / Traces::columns;
    }
    const double truth = m_phantom.TimeMeanVelocity();
    EXPECT_NEAR(mean, truth, 0.05 * truth);
    EXPECT_NEAR(envelope, 2 * truth, 0.05 * 2 * truth);
}

TEST_P(PhantomTest, TheTracesRepeatWithTheHeart)
{
    for (const double rate : {60.0, 100.0}) {
        m_settings.heartRate = rate;
        const Phantom phantom(m_settings);
        const Traces traces(phantom, phantom.DefaultGate());
        EXPECT_EQ(phantom.HeartRate(), rate);
        EXPECT_NEAR(traces.Period(envelopeForward, 40, 110), 6000 / rate, 2) << rate;
    }
}

TEST_P(PhantomTest, FlowAwayFromTheProbeIsReverse)
{
    std::swap(m_settings.vessel.peakVelocity, m_settings.vessel.restingVelocity);
    m_settings.vessel.peakVelocity *= -1;
    m_settings.vessel.restingVelocity *= -1;
    const Phantom phantom(m_settings);
    const Traces traces(phantom, phantom.DefaultGate());
    const double fastest = m_settings.vessel.restingVelocity;
    EXPECT_NEAR(traces.Most(envelopeReverse), fastest, -0.04 * fastest);
    EXPECT_NEAR(traces.Most(meanReverse), fastest / 2, -0.15 * fastest);
    EXPECT_EQ(traces.Most(envelopeForward), 0);
}

TEST_P(PhantomTest, ABeamAcrossTheVesselSeesTheWidthGrowOnly)
{
    DopplerGate gate = m_phantom.DefaultGate();
    gate.beamAngle = -m_settings.vessel.tilt;
    EXPECT_NEAR(m_phantom.CosineOfBeam(gate), 0, 1e-9);
    const Spectrum spectrum = m_phantom.Doppler(gate, 0, 50, 50);
    for (const unsigned char bin : spectrum.traces)
        EXPECT_NEAR(bin, 128, 12);
}

TEST_P(PhantomTest, OnlyNoiseComesFromBesideTheVessel)
{
    DopplerGate gate = m_phantom.DefaultGate();
    gate.place = m_settings.cyst.centre;
    gate.length = 2;
    const Spectrum spectrum = m_phantom.Doppler(gate, 0, 100, 100);
    double sum = 0;
    for (const float power : spectrum.power)
        sum += power;
    EXPECT_NEAR(sum / static_cast<double>(spectrum.power.size()), 1, 0.05);
    for (const unsigned char bin : spectrum.traces)
        EXPECT_EQ(bin, 128);
}

// Parabolic flow in a round vessel has each velocity up to the fastest equally often.
TEST_P(PhantomTest, ThePowerIsEvenUpToTheFastestBlood)
{
    m_settings.vessel.restingVelocity = m_settings.vessel.peakVelocity;
    const Phantom phantom(m_settings);
    const DopplerGate gate = phantom.DefaultGate();
    const Spectrum spectrum = phantom.Doppler(gate, 0, 200, 20);
    const double fastest = std::abs(m_settings.vessel.peakVelocity * phantom.CosineOfBeam(gate)) /
                           spectrum.velocityPerBin;
    const auto meanPower = [&](double from, double to) {
        double sum = 0;
        int count = 0;
        for (int column = 0; column < spectrum.columns; ++column)
            for (int bin = static_cast<int>(from); bin < static_cast<int>(to); ++bin) {
                sum += spectrum.power.at(static_cast<std::size_t>(column * spectrum.bins + bin));
                ++count;
            }
        return sum / count;
    };
    const double slow = meanPower(128 + 0.1 * fastest, 128 + 0.5 * fastest);
    const double fast = meanPower(128 + 0.5 * fastest, 128 + 0.9 * fastest);
    EXPECT_GT(slow, 50);
    EXPECT_NEAR(fast / slow, 1, 0.15);
    EXPECT_LT(meanPower(128 + 1.1 * fastest, 255), 2);
    EXPECT_LT(meanPower(0, 124), 2);
}

// A velocity beyond the span appears at the other end, lower by the span.
TEST_P(PhantomTest, FastFlowFolds)
{
    m_settings.vessel.restingVelocity = m_settings.vessel.peakVelocity;
    const Phantom phantom(m_settings);
    DopplerGate gate = phantom.DefaultGate();
    gate.pulsePeriod *= 2; // the flow now reaches to 0.8 of the whole span
    const Spectrum spectrum = phantom.Doppler(gate, 0, 50, 50);
    int brightReverse = 0;
    for (int column = 0; column < 50; ++column)
        for (int bin = 1; bin < 70; ++bin)
            brightReverse += spectrum.levels.at(static_cast<std::size_t>(column * 256 + bin)) > 100;
    EXPECT_GT(brightReverse, 50 * 30);
}

} // namespace

} // namespace simulation
