#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>
#include <wbemidl.h>

#include <atomic>

/// Receives the network drivers' events and passes them to CStatusNetwork and CStatusWireless, on
/// the thread that delivers them. Only the first event of a batch that says anything counts.
///
/// An object counts the references to itself and destroys itself when the last one is released. The
/// object that CWmiService made also lives until the service lets go of it. The reference count
/// does not include the service. The platform may release its references before the service lets go
/// or after.
class UTILS_STATICS_API QuerySink : public IWbemObjectSink
{
public:
    /// Makes an object without references.
    QuerySink() noexcept = default;
    QuerySink(const QuerySink&) = delete;
    QuerySink& operator=(const QuerySink&) = delete;

    /// The platform's rules for objects that count their references. The interfaces are IUnknown
    /// and IWbemObjectSink.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    /// Always returns WBEM_S_NO_ERROR. An exception of the repaint callback ends here.
    HRESULT STDMETHODCALLTYPE Indicate(LONG count, IWbemClassObject** events) override;
    /// Does nothing and returns WBEM_S_NO_ERROR.
    HRESULT STDMETHODCALLTYPE SetStatus(LONG flags, HRESULT result, BSTR text,
                                        IWbemClassObject* object) override;
    virtual ~QuerySink();

    /// Stores a pointer and never uses it: the events go to the status items.
    void SetConnectionStatusPointer(bool* status) noexcept { m_connectionStatus = status; }
    void SetAdaptorStatusPointer(bool* status) noexcept { m_adaptorStatus = status; }
    void SetWirelessAdapterStatusPointer(bool* status) noexcept { m_wirelessStatus = status; }
    void SetLocalAdapterStatusPointer(bool* status) noexcept { m_localStatus = status; }
    void SetWireLessSpeedPointer(unsigned int* speed) noexcept { m_wirelessSpeed = speed; }

private:
    friend class CWmiService;

    enum class Outcome
    {
        goOn, // the event says nothing; look at the next one
        stop
    };

    /// Each reference holds the object, and so does the service, which the reference count does not
    /// include. The last LetGo destroys it.
    void Hold() noexcept;
    void LetGo() noexcept;
    /// Keeps events from changing a status item from now on; waits for one that is doing so.
    void Close() noexcept;

    Outcome HandleEvent(IWbemClassObject& event);
    Outcome ShowConnection(IWbemClassObject& event, bool connected);
    Outcome ShowAvailability(IWbemClassObject& event, bool available);
    template <class Change>
    Outcome Apply(const Change& change);

    LONG m_references = 0;
    bool* m_connectionStatus = nullptr;
    bool* m_adaptorStatus = nullptr;
    bool* m_wirelessStatus = nullptr;
    bool* m_localStatus = nullptr;
    unsigned int* m_wirelessSpeed = nullptr;

    LONG m_holds = 0; // the references and the service
    std::atomic<bool> m_isClosed = false;
};
