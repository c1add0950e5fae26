#include "status/ProbeSimulator.h"

#include <cmath>

namespace exam {

namespace {

constexpr int sensorVersion = 2;

// Rises from 0 to 1 in one period, and falls back to 0 in the next.
double ToAndFro(double seconds, double period)
{
    const double phase = std::fmod(seconds, 2 * period) / period;
    return phase <= 1 ? phase : 2 - phase;
}

} // namespace

CStatusProbeSensor::SensorData ProbeSimulator::ReadingAt(double seconds)
{
    return {true, coldest + (hottest - coldest) * ToAndFro(seconds, heatingPeriod),
            180 * ToAndFro(seconds, turningPeriod), 0, sensorVersion};
}

void ProbeSimulator::Plug(bool plugged)
{
    m_plugged = plugged;
    m_time = 0;
    Show();
}

void ProbeSimulator::SetError(bool error)
{
    m_error = error;
    Show();
}

void ProbeSimulator::Advance(double seconds)
{
    m_time += seconds;
    Show();
}

void ProbeSimulator::Show() const
{
    CStatusProbeSensor::SensorData reading;
    if (m_plugged) reading = ReadingAt(m_time);
    if (m_error) reading.errorStatus = 1;
    CStatusProbeSensor::setState(reading);
}

} // namespace exam
