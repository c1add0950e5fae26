#pragma once

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

} // namespace exam
