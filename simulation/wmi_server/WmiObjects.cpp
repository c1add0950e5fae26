#include "WmiObjects.h"

#include <utility>

namespace simulation {

namespace {

void Store(std::monostate, VARIANT& value)
{
    value.vt = VT_NULL;
}

void Store(const std::wstring& text, VARIANT& value)
{
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

void Store(std::int32_t number, VARIANT& value)
{
    value.vt = VT_I4;
    value.lVal = number;
}

void Store(std::int16_t number, VARIANT& value)
{
    value.vt = VT_I2;
    value.iVal = number;
}

} // namespace

WmiClassObject::WmiClassObject(WmiState& state, WmiProperties properties)
    : ComObject(state), m_properties(std::move(properties))
{
}

HRESULT WmiClassObject::Get(LPCWSTR name, LONG, VARIANT* value, CIMTYPE*, LONG*)
{
    if (const auto failure = Note(WmiCall::get, std::wstring(L"Get ") + name)) return *failure;
    const auto found = m_properties.find(name);
    if (found == m_properties.end()) return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
    std::visit([&](const auto& property) { Store(property, *value); }, found->second);
    return WBEM_S_NO_ERROR;
}

WmiEnumerator::WmiEnumerator(WmiState& state, std::vector<WmiProperties> objects)
    : ComObject(state), m_objects(std::move(objects))
{
}

HRESULT WmiEnumerator::Next(LONG timeout, ULONG count, IWbemClassObject** objects, ULONG* returned)
{
    const auto failure =
        Note(WmiCall::next, L"Next " + std::to_wstring(timeout) + L" " + std::to_wstring(count));
    if (m_state.delay.count() > 0) Sleep(static_cast<DWORD>(m_state.delay.count()));
    *returned = 0;
    *objects = nullptr;
    if (failure) return *failure;
    if (m_next == m_objects.size()) return WBEM_S_FALSE;
    *objects = new WmiClassObject(m_state, m_objects[m_next++]);
    *returned = 1;
    return WBEM_S_NO_ERROR;
}

} // namespace simulation
