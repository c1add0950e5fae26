#pragma once

#include "ReducedInterfaces.h"
#include "wmi_server/WmiServer.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace simulation {

// The base of the server's objects, which allows a list of all of them.
class WmiUnknown
{
public:
    virtual ~WmiUnknown() = default;
    bool IsLive() const { return m_references > 0; }

protected:
    std::atomic<LONG> m_references = 1;
};

struct PlannedFailure
{
    WmiCall call;
    int number; // counts down; 0 means every call
    HRESULT result;
};

struct Subscription
{
    std::wstring eventClass;
    IWbemObjectSink* sink;
    bool isCounted;
};

// The state that the server and its objects share.
struct WmiState
{
    // Records a call. The result is the one to return when the call is to fail, else nothing.
    std::optional<HRESULT> Note(WmiCall call, const std::wstring& line);
    // Records a call of an object that is not live.
    void NoteMisuse() { ++misuses; }
    void Keep(WmiUnknown* object);
    // Takes back an object whose last reference was released.
    void Drop(WmiUnknown* object);

    mutable std::mutex mutex;
    std::map<std::wstring, std::vector<WmiProperties>> answers;
    std::chrono::milliseconds delay{0};
    std::vector<PlannedFailure> failures;
    int failingCall = 0; // counts down; 0 means none
    HRESULT failingResult = S_OK;
    std::vector<WmiCall> throwing;
    std::function<void()> onCancel;
    SinkReferences sinkReferences = SinkReferences::untilCancelled;
    std::vector<Subscription> subscriptions;
    std::vector<ULONG> sinkCounts;
    std::vector<std::wstring> calls;
    int callCount = 0;
    std::atomic<int> misuses = 0;
    bool keepsReleased = true;
    std::vector<std::unique_ptr<WmiUnknown>> objects;

private:
    std::optional<HRESULT> PlannedResult(WmiCall call);
};

// The platform's interface that a class implements: the one that it names, or itself.
template <class T>
struct Offered
{
    using Type = T;
};
template <class T>
requires requires
{
    typename T::Interface;
}
struct Offered<T>
{
    using Type = typename T::Interface;
};

// An object of the server with these interfaces. It is made with `new` and has one reference.
template <class First, class... Others>
class ComObject : public First, public Others..., public WmiUnknown
{
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        CheckLive();
        *object = nullptr;
        if (iid == __uuidof(IUnknown)) *object = static_cast<First*>(this);
        OfferAs<First>(iid, object);
        (OfferAs<Others>(iid, object), ...);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override
    {
        CheckLive();
        return static_cast<ULONG>(++m_references);
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        CheckLive();
        const LONG references = --m_references;
        if (references == 0) m_state.Drop(this);
        return static_cast<ULONG>(references);
    }

protected:
    explicit ComObject(WmiState& state) : m_state(state) { state.Keep(this); }

    std::optional<HRESULT> Note(WmiCall call, const std::wstring& line) const
    {
        CheckLive();
        return m_state.Note(call, line);
    }
    void CheckLive() const
    {
        if (!IsLive()) m_state.NoteMisuse();
    }

    WmiState& m_state;

private:
    template <class Interface>
    void OfferAs(REFIID iid, void** object)
    {
        if (iid == __uuidof(typename Offered<Interface>::Type))
            *object = static_cast<Interface*>(this);
    }
};

// An instance or an event.
class WmiClassObject final : public ComObject<ReducedClassObject>
{
public:
    WmiClassObject(WmiState& state, WmiProperties properties);

    STDMETHODIMP Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type,
                     LONG* flavor) override;

private:
    WmiProperties m_properties;
};

// The objects that a query returns, one after the other.
class WmiEnumerator final : public ComObject<ReducedEnumerator>
{
public:
    WmiEnumerator(WmiState& state, std::vector<WmiProperties> objects);

    STDMETHODIMP Next(LONG timeout, ULONG count, IWbemClassObject** objects,
                      ULONG* returned) override;

private:
    std::vector<WmiProperties> m_objects;
    std::size_t m_next = 0;
};

// The connected namespace. Clients query its security like a proxy's.
class WmiServices final : public ComObject<ReducedServices, IClientSecurity>
{
public:
    explicit WmiServices(WmiState& state) : ComObject(state) {}

    STDMETHODIMP CancelAsyncCall(IWbemObjectSink* sink) override;
    STDMETHODIMP ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                           IEnumWbemClassObject** objects) override;
    STDMETHODIMP ExecNotificationQueryAsync(const BSTR language, const BSTR query, LONG flags,
                                            IWbemContext* context, IWbemObjectSink* sink) override;

    STDMETHODIMP QueryBlanket(IUnknown*, DWORD*, DWORD*, OLECHAR**, DWORD*, DWORD*, void**,
                              DWORD*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorisation,
                            OLECHAR* name, DWORD level, DWORD impersonation, void* identity,
                            DWORD capabilities) override;
    STDMETHODIMP CopyProxy(IUnknown*, IUnknown**) override { return E_NOTIMPL; }

private:
    void TouchSink(IWbemObjectSink* sink);
    void Subscribe(const std::wstring& query, IWbemObjectSink* sink);
};

// The locator that connects to the namespace.
class WmiLocator final : public ComObject<IWbemLocator>
{
public:
    explicit WmiLocator(WmiState& state) : ComObject(state) {}

    STDMETHODIMP ConnectServer(const BSTR name, const BSTR user, const BSTR password,
                               const BSTR locale, LONG flags, const BSTR authority,
                               IWbemContext* context, IWbemServices** services) override;
};

} // namespace simulation
