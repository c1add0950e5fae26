#include "network/ObjectProperty.h"

#include <comdef.h>

namespace utils_statics {

std::optional<std::wstring> TextProperty(IWbemClassObject& object, const wchar_t* name)
{
    _variant_t value;
    if (FAILED(object.Get(name, 0, &value, nullptr, nullptr)) || value.vt != VT_BSTR)
        return std::nullopt;
    return std::wstring(value.bstrVal, SysStringLen(value.bstrVal)); // a null text is an empty one
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
