#include "network/DriverNamespace.h"

#include <comdef.h>

#include <utility>

namespace utils_statics {

namespace {

// What calls to the service may do with our identity.
HRESULT SetSecurity(IWbemServices* services)
{
    return CoSetProxyBlanket(services, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr,
                             RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr,
                             EOAC_NONE);
}

base::ComPointer<IWbemClassObject> NextObject(IEnumWbemClassObject& objects)
{
    base::ComPointer<IWbemClassObject> object;
    ULONG count = 0;
    const HRESULT result = objects.Next(static_cast<LONG>(WBEM_INFINITE), 1, object.put(), &count);
    if (FAILED(result) || count == 0) object.reset();
    return object;
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

void VisitObjects(IWbemServices& services, const wchar_t* query,
                  const std::function<bool(IWbemClassObject&)>& visit)
{
    base::ComPointer<IEnumWbemClassObject> objects;
    const _bstr_t language(L"WQL");
    const _bstr_t text(query);
    if (FAILED(services.ExecQuery(language, text,
                                  WBEM_FLAG_RETURN_IMMEDIATELY | WBEM_FLAG_FORWARD_ONLY, nullptr,
                                  objects.put())) ||
        !objects)
        return;
    while (const auto object = NextObject(*objects.get()))
        if (visit(*object.get())) return;
}

} // namespace utils_statics
