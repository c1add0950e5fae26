#pragma once

#include <wmi_server/WmiServer.h>

namespace exam {

/// The network adapters of a computer whose platform tells nothing of its own: the platform's
/// management service is played in this process, with one wired and one wireless adapter. What is
/// set here is what the service answers from then on, and it is told at once to whoever has
/// subscribed, on a thread of its own as the platform does.
///
/// COM has to be initialised on the thread that makes and destroys it.
class NetworkSimulator
{
public:
    /// Everything is there and connected, with a good signal. Throws std::runtime_error when the
    /// service cannot be registered.
    NetworkSimulator();

    bool IsWiredConnected() const { return m_wired; }
    bool HasWireless() const { return m_hasWireless; }
    bool IsWirelessConnected() const { return m_wireless; }
    int Signal() const { return m_signal; }

    void ConnectWired(bool connected);
    /// The wireless adapter arrives or is removed.
    void PlugWireless(bool plugged);
    void ConnectWireless(bool connected);
    /// Level of the wireless signal in dBm.
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

} // namespace exam
