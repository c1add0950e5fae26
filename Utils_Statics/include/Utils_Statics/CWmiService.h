#pragma once

#include <Utils_Statics/export.h>

#include <cstdint>

class QuerySink;
struct IWbemLocator;
struct IWbemServices;

/// The network monitoring: keeps CStatusNetwork and CStatusWireless as the network drivers' classes
/// of the platform's management interface (WMI, namespace "ROOT\WMI") report them.
///
/// One instance per process, for the user-interface thread; the events arrive on a thread of the
/// platform. COM has to be initialised on the threads that use it. There is no reconnection: when
/// connecting failed, every query gives -1 and no events arrive, and the icons show the state that
/// worries nobody.
class UTILS_STATICS_API CWmiService
{
public:
    /// The instance; the first call creates it, which calls Initialize.
    static CWmiService* getInstance();

    /// Ends the monitoring and destroys the instance, if there is one.
    static void destroyInstance();

    CWmiService(const CWmiService&) = delete;
    CWmiService& operator=(const CWmiService&) = delete;

    /// Ends what is connected, connects anew and subscribes to the drivers' events. True only when
    /// the last subscription was accepted; the connection serves queries in any case unless one of
    /// its own steps failed. Raises _com_error (E_OUTOFMEMORY) when the namespace's name cannot be
    /// allocated.
    bool Initialize();

    /// Cancels the subscriptions and closes the connection. No event changes a status item any
    /// more. An exception of the platform's objects ends it early.
    void Destroy();

    /// Polls the state of the adapters into the status items. Whatever cannot be found out counts
    /// as connected and available, deliberately.
    void Update();

    /// Runs a WQL query and reduces its objects to one number. Waits as long as the service takes.
    /// -1 when it cannot be run, also for want of memory, or no object fits.
    ///
    /// mode 0: the quality of the first signal level, 2 * dBm + 200 and at most 100; below -100 dBm
    /// it is negative. mode 1: whether the first adapter with "Wireless", "Network" or "NIC" in its
    /// name and a known state is connected, 1 or 0. mode 2: 1 for an adapter with "Wireless" in its
    /// name.
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
