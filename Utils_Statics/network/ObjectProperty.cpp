#include "network/ObjectProperty.h"

namespace utils_statics {

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
