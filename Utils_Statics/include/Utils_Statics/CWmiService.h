#pragma once

#include <Utils_Statics/export.h>

#include <cstdint>

class QuerySink;
struct IWbemLocator;
struct IWbemServices;

/// The network monitoring. It keeps CStatusNetwork and CStatusWireless at the state that the
/// network drivers' classes of the platform's management interface (WMI, namespace "ROOT\WMI")
/// report.
///
/// There is one instance per process, for the user-interface thread; the events arrive on a thread
/// of the platform. COM has to be initialised on the threads that use the instance. It does not
/// reconnect: when connecting failed, every query gives -1, no events arrive, and the icons show
/// the network as connected and available.
class UTILS_STATICS_API CWmiService
{
public:
    /// The instance; the first call creates it and so calls Initialize.
    static CWmiService* getInstance();

    /// Ends the monitoring and destroys the instance, if there is one.
    static void destroyInstance();

    CWmiService(const CWmiService&) = delete;
    CWmiService& operator=(const CWmiService&) = delete;

    /// Ends the connection there is, connects anew and subscribes to the drivers' events. True only
    /// when the last subscription was accepted. The connection serves queries even on false, unless
    /// one of its own steps failed. Raises _com_error (E_OUTOFMEMORY) when the namespace's name
    /// cannot be allocated.
    bool Initialize();

    /// Cancels the subscriptions and closes the connection. Afterwards no event changes a status
    /// item. An exception of the platform's objects ends it early.
    void Destroy();

    /// Polls the state of the adapters into the status items. Deliberately, a state that cannot be
    /// found out counts as connected or available.
    void Update();

    /// Runs a WQL query and reduces its objects to one number. Waits as long as the service takes.
    /// -1 when the query cannot be run, also for lack of memory, or when no object fits.
    ///
    /// Mode 0 gives the quality of the first signal level, 2 * dBm + 200 and at most 100; it is
    /// negative below -100 dBm. Mode 1 gives 1 when the first adapter with "Wireless", "Network" or
    /// "NIC" in its name and a known state is connected, else 0. Mode 2 gives 1 when an adapter has
    /// "Wireless" in its name.
    std::int32_t Query(std::int32_t mode, const wchar_t* query);

private:
    friend class CStatusFactory;

    CWmiService();
    virtual ~CWmiService();

    static void StopEvents() noexcept;
    bool RegisterForNDISNotification();

    IWbemServices* m_services = nullptr; // null while not connected
    IWbemLocator* m_locator = nullptr;
    QuerySink* m_sink = nullptr;

    static CWmiService* m_me;
};
