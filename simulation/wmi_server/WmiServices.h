#pragma once

#include "ComObject.h"
#include "ReducedInterfaces.h"

namespace simulation {

// The connected namespace. Clients query its security like a proxy's.
class WmiServices final : public ComObject<ReducedServices, IClientSecurity>
{
public:
    explicit WmiServices(WmiState& state) : ComObject(state) {}

    HRESULT STDMETHODCALLTYPE CancelAsyncCall(IWbemObjectSink* sink) override;
    HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR language, const BSTR query, LONG flags,
                                        IWbemContext* context,
                                        IEnumWbemClassObject** objects) override;
    HRESULT STDMETHODCALLTYPE ExecNotificationQueryAsync(const BSTR language, const BSTR query,
                                                         LONG flags, IWbemContext* context,
                                                         IWbemObjectSink* sink) override;

    HRESULT STDMETHODCALLTYPE QueryBlanket(IUnknown*, DWORD*, DWORD*, OLECHAR**, DWORD*, DWORD*,
                                           void**, DWORD*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorisation,
                                         OLECHAR* name, DWORD level, DWORD impersonation,
                                         void* identity, DWORD capabilities) override;
    HRESULT STDMETHODCALLTYPE CopyProxy(IUnknown*, IUnknown**) override { return E_NOTIMPL; }

private:
    void TouchSink(IWbemObjectSink* sink);
    void Subscribe(const std::wstring& query, IWbemObjectSink* sink);
};

// The locator that connects to the namespace.
class WmiLocator final : public ComObject<IWbemLocator>
{
public:
    explicit WmiLocator(WmiState& state) : ComObject(state) {}

    HRESULT STDMETHODCALLTYPE ConnectServer(const BSTR name, const BSTR user, const BSTR password,
                                            const BSTR locale, LONG flags, const BSTR authority,
                                            IWbemContext* context,
                                            IWbemServices** services) override;
};

} // namespace simulation
