#include "network/NetworkDrivers.h"

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

TextProperty::TextProperty(IWbemClassObject& object, const wchar_t* name)
    : m_isRead(SUCCEEDED(object.Get(name, 0, &m_value, nullptr, nullptr)) && m_value.vt == VT_BSTR)
{
}

std::wstring_view TextProperty::View() const noexcept
{
    if (!m_isRead) return {};
    return {m_value.bstrVal, SysStringLen(m_value.bstrVal)}; // a null text is an empty one
}

std::optional<std::int32_t> NumberProperty(IWbemClassObject& object, const wchar_t* name)
{
    _variant_t value;
    if (FAILED(object.Get(name, 0, &value, nullptr, nullptr))) return std::nullopt;
    switch (value.vt) {
    case VT_I4:
    case VT_INT:
    case VT_UI4:
    case VT_UINT: return value.lVal;
    case VT_I2: return value.iVal;
    case VT_UI2: return value.uiVal;
    case VT_UI1: return value.bVal;
    default: return std::nullopt;
    }
}

} // namespace utils_statics
