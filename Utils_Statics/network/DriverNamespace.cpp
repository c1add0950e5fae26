#include "network/DriverNamespace.h"

#include <comdef.h>

namespace utils_statics {

namespace {

// Sets what the service may do with the caller's identity.
HRESULT SetSecurity(IWbemServices* services)
{
    return CoSetProxyBlanket(services, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr,
                             RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr,
                             EOAC_NONE);
}

} // namespace

DriverConnection ConnectToDrivers()
{
    DriverConnection connection;
    if (FAILED(CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                reinterpret_cast<void**>(connection.locator.put()))) ||
        !connection.locator)
        return {};
    const _bstr_t name(L"ROOT\\WMI");
    if (FAILED(connection.locator.get()->ConnectServer(name, nullptr, nullptr, nullptr, 0, nullptr,
                                                       nullptr, connection.services.put())) ||
        !connection.services || FAILED(SetSecurity(connection.services.get())))
        return {};
    return connection;
}

WqlQuery::WqlQuery(const wchar_t* query) noexcept
    : language(SysAllocString(L"WQL")), text(SysAllocString(query))
{
}

QueryResult::QueryResult(IWbemServices& services, const wchar_t* query)
{
    const WqlQuery wql(query);
    if (wql && FAILED(services.ExecQuery(wql.language.get(), wql.text.get(),
                                         WBEM_FLAG_RETURN_IMMEDIATELY | WBEM_FLAG_FORWARD_ONLY,
                                         nullptr, m_objects.put())))
        m_objects.reset();
}

base::ComPointer<IWbemClassObject> QueryResult::Next()
{
    base::ComPointer<IWbemClassObject> object;
    ULONG count = 0;
    if (m_objects &&
        (FAILED(m_objects.get()->Next(static_cast<LONG>(WBEM_INFINITE), 1, object.put(), &count)) ||
         count == 0))
        object.reset();
    return object;
}

} // namespace utils_statics
