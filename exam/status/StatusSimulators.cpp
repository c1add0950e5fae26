#include "status/StatusSimulators.h"

#include <cmath>
#include <string>
#include <thread>

namespace exam {

namespace {

using Objects = std::vector<simulation::WmiProperties>;

constexpr wchar_t wiredName[] = L"Simulated Network Connection";
constexpr wchar_t wirelessName[] = L"Simulated Wireless Adapter";

simulation::WmiProperties Media(const wchar_t* name, bool connected)
{
    constexpr int driversConnected = 0;
    constexpr int driversDisconnected = 1;
    return {{L"InstanceName", name},
            {L"NdisMediaConnectStatus", connected ? driversConnected : driversDisconnected}};
}

constexpr int sensorVersion = 2;

// Rises from 0 to 1 in one period, and falls back to 0 in the next.
double ToAndFro(double seconds, double period)
{
    const double phase = std::fmod(seconds, 2 * period) / period;
    return phase <= 1 ? phase : 2 - phase;
}

} // namespace

NetworkSimulator::NetworkSimulator()
{
    m_server.ForgetReleased();
    Answer();
}

void NetworkSimulator::ConnectWired(bool connected)
{
    m_wired = connected;
    Answer();
    Tell(connected ? L"MSNdis_StatusMediaConnect" : L"MSNdis_StatusMediaDisconnect", wiredName);
}

void NetworkSimulator::PlugWireless(bool plugged)
{
    m_hasWireless = plugged;
    Answer();
    Tell(plugged ? L"MSNdis_NotifyAdapterArrival" : L"MSNdis_NotifyAdapterRemoval", wirelessName);
}

void NetworkSimulator::ConnectWireless(bool connected)
{
    m_wireless = connected;
    Answer();
    Tell(connected ? L"MSNdis_StatusMediaConnect" : L"MSNdis_StatusMediaDisconnect", wirelessName);
}

void NetworkSimulator::SetSignal(int level)
{
    m_signal = level;
    Answer();
    Tell(L"MSNdis_StatusLinkSpeedChange", wirelessName);
}

// Sets the answers to the queries of the monitoring.
void NetworkSimulator::Answer()
{
    m_server.SetAnswer(L"SELECT * FROM MSNdis_MediaConnectStatus WHERE InstanceName NOT LIKE "
                       L"%%Wireless%%",
                       {Media(wiredName, m_wired)});
    Objects wireless;
    Objects signal;
    Objects adapters = {{{L"InstanceName", wiredName}}};
    if (m_hasWireless) {
        adapters.push_back({{L"InstanceName", wirelessName}});
        wireless.push_back(Media(wirelessName, m_wireless));
        signal.push_back({{L"Ndis80211ReceivedSignalStrength", m_signal}});
    }
    m_server.SetAnswer(
        L"SELECT * FROM MSNdis_MediaConnectStatus WHERE InstanceName LIKE %%Wireless%%", wireless);
    m_server.SetAnswer(L"SELECT * FROM MSNdis_80211_ReceivedSignalStrength Where active=true",
                       signal);
    m_server.SetAnswer(L"SELECT * FROM MSNdis_EnumerateAdapter", adapters);
}

// Waiting for the thread is safe: the receivers only store a state and post a message.
void NetworkSimulator::Tell(const wchar_t* eventClass, const wchar_t* adapter)
{
    std::jthread([&] {
        m_server.Deliver({{{L"__CLASS", eventClass}, {L"InstanceName", adapter}}});
    }).join();
}

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
