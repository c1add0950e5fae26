#pragma once

#include <Utils_Statics/CStatusProbeSensor.h>
#include <wmi_server/WmiServer.h>

namespace exam {

/// Simulates network adapters where the platform reports none. It plays the platform's management
/// service in this process, with one wired and one wireless adapter. The service answers with what
/// is set here, and it tells every subscriber of a change at once, on a thread of its own as the
/// platform does.
///
/// COM must be initialised on the thread that makes and destroys it.
class NetworkSimulator
{
public:
    /// Both adapters are present and connected at first, with a good signal. Throws
    /// std::runtime_error when the service cannot be registered.
    NetworkSimulator();

    bool IsWiredConnected() const { return m_wired; }
    bool HasWireless() const { return m_hasWireless; }
    bool IsWirelessConnected() const { return m_wireless; }
    int Signal() const { return m_signal; }

    void ConnectWired(bool connected);
    /// Plugs the wireless adapter in, or removes it.
    void PlugWireless(bool plugged);
    void ConnectWireless(bool connected);
    /// Sets the level of the wireless signal in dBm.
    void SetSignal(int level);

private:
    void Answer();
    void Tell(const wchar_t* eventClass, const wchar_t* adapter);

    simulation::WmiServer m_server;
    bool m_wired = true;
    bool m_hasWireless = true;
    bool m_wireless = true;
    int m_signal = -55;
};

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
