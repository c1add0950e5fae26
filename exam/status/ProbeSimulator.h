#pragma once

#include <Utils_Statics/CStatusProbeSensor.h>

namespace exam {

/// The sensor of a simulated probe. Its tip warms up beyond the warning's threshold and cools down
/// again, and its plane turns to and fro.
class ProbeSimulator
{
public:
    static constexpr double coldest = 36.0;       ///< degrees Celsius
    static constexpr double hottest = 40.4;       ///< degrees Celsius
    static constexpr double heatingPeriod = 30.0; ///< seconds from coldest to hottest
    static constexpr double turningPeriod = 8.0;  ///< seconds from 0 to 180 degrees

    /// The reading at a time in seconds, counted from the coldest.
    static CStatusProbeSensor::SensorData ReadingAt(double seconds);

    /// Plugs the probe in or pulls it out; without a probe there is no sensor.
    void Plug(bool plugged);
    bool IsPlugged() const { return m_plugged; }

    /// Lets the sensor report an error of the hardware.
    void SetError(bool error);
    bool HasError() const { return m_error; }

    /// Advances by a time in seconds and shows the reading.
    void Advance(double seconds);

private:
    void Show() const;

    bool m_plugged = false;
    bool m_error = false;
    double m_time = 0; // seconds
};

} // namespace exam
