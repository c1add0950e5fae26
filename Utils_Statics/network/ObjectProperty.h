#pragma once

#include <windows.h>

#include <wbemidl.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace utils_statics {

// A property of an object of the management interface; nothing when it cannot be read or is not of
// this type.
std::optional<std::wstring> TextProperty(IWbemClassObject& object, const wchar_t* name);
// The 32 bits of an integer of at most that size.
std::optional<std::int32_t> NumberProperty(IWbemClassObject& object, const wchar_t* name);

// What the driver calls the adapter; empty when that cannot be read.
inline std::wstring InstanceName(IWbemClassObject& object)
{
    return TextProperty(object, L"InstanceName").value_or(std::wstring());
}

// How adapters are told apart, by parts of their names. Case matters.
inline bool IsWirelessName(std::wstring_view name)
{
    return name.find(L"Wireless") != std::wstring_view::npos;
}
inline bool IsWiredName(std::wstring_view name)
{
    return !IsWirelessName(name) && (name.find(L"Network") != std::wstring_view::npos ||
                                     name.find(L"NIC") != std::wstring_view::npos);
}

} // namespace utils_statics
