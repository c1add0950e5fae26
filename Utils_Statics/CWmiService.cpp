#include "Utils_Statics/CWmiService.h"

#include "network/NetworkDrivers.h"
#include "text/TextView.h"

#include <base/WrapArithmetic.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/QuerySink.h>

#include <algorithm>
#include <optional>
#include <utility>

using namespace utils_statics;

constinit CWmiService* CWmiService::m_me = nullptr;

namespace {

enum QueryMode : std::int32_t
{
    signalQuality = 0,
    mediaState = 1,
    wirelessAdapter = 2,
};

constexpr std::int32_t unknown = -1;

std::optional<std::int32_t> SignalQuality(IWbemClassObject& object)
{
    constexpr int best = 100;
    const auto level = NumberProperty(object, L"Ndis80211ReceivedSignalStrength"); // dBm
    if (!level) return std::nullopt;
    return std::min(base::wrap::Add(base::wrap::Multiply(2, *level), 200), best);
}

std::optional<std::int32_t> MediaState(IWbemClassObject& object)
{
    const TextProperty name = InstanceName(object);
    if (!IsWirelessName(name) && !IsWiredName(name)) return std::nullopt;
    const auto status = NumberProperty(object, L"NdisMediaConnectStatus");
    if (!status) return std::nullopt;
    return (*status & 0xffff) == 0 ? 1 : 0; // 0 is the drivers' "connected"
}

std::optional<std::int32_t> WirelessAdapter(IWbemClassObject& object)
{
    if (!IsWirelessName(InstanceName(object))) return std::nullopt;
    return 1;
}

// The number that a query of this mode takes from an object; none when the object does not fit.
std::optional<std::int32_t> Figure(std::int32_t mode, IWbemClassObject& object)
{
    switch (mode) {
    case signalQuality: return SignalQuality(object);
    case mediaState: return MediaState(object);
    case wirelessAdapter: return WirelessAdapter(object);
    default: return std::nullopt;
    }
}

bool Subscribe(IWbemServices& services, const wchar_t* query, QuerySink* sink)
{
    const WqlQuery wql(query);
    return wql && SUCCEEDED(services.ExecNotificationQueryAsync(wql.language.get(), wql.text.get(),
                                                                0, nullptr, sink));
}

} // namespace

CWmiService* CWmiService::getInstance()
{
    if (!m_me) m_me = new CWmiService;
    return m_me;
}

void CWmiService::destroyInstance()
{
    delete m_me;
    m_me = nullptr;
}

CWmiService::CWmiService()
{
    Initialize(); // the instance is needed even without a connection
}

CWmiService::~CWmiService()
{
    Destroy();
}

bool CWmiService::Initialize()
{
    Destroy();
    m_locator = nullptr;
    DriverConnection connection = ConnectToDrivers();
    if (!connection) return false;
    m_sink = new QuerySink;
    m_sink->Hold();
    m_locator = connection.locator.release();
    m_services = connection.services.release();
    return RegisterForNDISNotification();
}

bool CWmiService::RegisterForNDISNotification()
{
    if (!m_services) return false;
    Subscribe(*m_services, L"SELECT * FROM MSNdis_StatusLinkSpeedChange", m_sink);
    Subscribe(*m_services, L"SELECT * FROM MSNdis_StatusMediaConnect", m_sink);
    Subscribe(*m_services, L"SELECT * FROM MSNdis_StatusMediaDisconnect", m_sink);
    Subscribe(*m_services, L"SELECT * FROM MSNdis_NotifyAdapterArrival", m_sink);
    return Subscribe(*m_services, L"SELECT * FROM MSNdis_NotifyAdapterRemoval", m_sink);
}

void CWmiService::Destroy()
{
    if (m_sink) m_sink->Close();
    try {
        if (m_services) {
            m_services->CancelAsyncCall(m_sink);
            std::exchange(m_services, nullptr)->Release();
        }
        if (m_locator) std::exchange(m_locator, nullptr)->Release();
        if (m_sink) std::exchange(m_sink, nullptr)->LetGo();
    } catch (...) { // the remaining platform objects stay as they are
    }
}

void CWmiService::StopEvents() noexcept
{
    if (m_me && m_me->m_sink) m_me->m_sink->Close();
}

void CWmiService::Update()
{
    Query(signalQuality, L"SELECT * FROM MSNdis_80211_ReceivedSignalStrength Where active=true");
    // The doubled percent signs are part of the texts. An unknown state is not 0, so it counts as
    // connected.
    CStatusNetwork::setState(Query(mediaState, L"SELECT * FROM MSNdis_MediaConnectStatus WHERE "
                                               L"InstanceName NOT LIKE %%Wireless%%") != 0);
    CStatusWireless::setConnected(Query(mediaState,
                                        L"SELECT * FROM MSNdis_MediaConnectStatus WHERE "
                                        L"InstanceName LIKE %%Wireless%%") != 0);
    CStatusWireless::setAvailable(
        Query(wirelessAdapter, L"SELECT * FROM MSNdis_EnumerateAdapter") != 0);
}

std::int32_t CWmiService::Query(std::int32_t mode, const wchar_t* query)
{
    if (!m_services) return unknown;
    QueryResult objects(*m_services, OrEmpty(query));
    while (const auto object = objects.Next())
        if (const auto figure = Figure(mode, *object.get())) return *figure;
    return unknown;
}
