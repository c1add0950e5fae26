#pragma once

#include <base/ComHandles.h>

#include <wbemidl.h>

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

} // namespace utils_statics
