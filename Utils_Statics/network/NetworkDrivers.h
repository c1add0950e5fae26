#pragma once

#include <base/ComHandles.h>

#include <windows.h>
#include <comdef.h>
#include <wbemidl.h>

#include <cstdint>
#include <optional>
#include <string_view>

// The management interface's view of the network drivers. COM must be initialised on the calling
// thread.
namespace utils_statics {

// The connection and the locator that made it; both are set or none.
struct DriverConnection
{
    base::ComPointer<IWbemLocator> locator;
    base::ComPointer<IWbemServices> services; // released first

    explicit operator bool() const noexcept { return static_cast<bool>(services); }
};

// Connects to the namespace of the network drivers' classes; empty when any step is refused. Raises
// _com_error (E_OUTOFMEMORY) when the namespace's name cannot be allocated.
DriverConnection ConnectToDrivers();

// The texts of a query for the service; false when memory is short.
struct WqlQuery
{
    explicit WqlQuery(const wchar_t* query) noexcept;

    explicit operator bool() const noexcept { return language && text; }

    base::Bstr language, text;
};

// The objects that a query returns; none when it cannot be run.
class QueryResult
{
public:
    QueryResult(IWbemServices& services, const wchar_t* query);

    // Null when there are no more. Waits as long as the service takes.
    base::ComPointer<IWbemClassObject> Next();

private:
    base::ComPointer<IEnumWbemClassObject> m_objects;
};

// A text property of an object of the management interface; false when it cannot be read or is not
// a text.
class TextProperty
{
public:
    TextProperty(IWbemClassObject& object, const wchar_t* name);

    explicit operator bool() const noexcept { return m_isRead; }
    // The view is valid while the property lives; it is empty when the property was not read.
    std::wstring_view View() const noexcept;

private:
    _variant_t m_value;
    bool m_isRead;
};

// The 32 bits of an integer property of at most that size; nothing when it cannot be read or is of
// another type.
std::optional<std::int32_t> NumberProperty(IWbemClassObject& object, const wchar_t* name);

// The driver's name for the adapter.
inline TextProperty InstanceName(IWbemClassObject& object)
{
    return TextProperty(object, L"InstanceName");
}

// Parts of their names distinguish the adapters. Case matters.
inline bool IsWirelessName(const TextProperty& name)
{
    return name.View().find(L"Wireless") != std::wstring_view::npos;
}
inline bool IsWiredName(const TextProperty& name)
{
    return !IsWirelessName(name) && (name.View().find(L"Network") != std::wstring_view::npos ||
                                     name.View().find(L"NIC") != std::wstring_view::npos);
}

} // namespace utils_statics
