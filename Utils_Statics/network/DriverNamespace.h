#pragma once

#include <base/ComHandles.h>

#include <wbemidl.h>

#include <functional>

// The management interface's view of the network drivers. COM has to be initialised on the calling
// thread. A text that cannot be allocated raises _com_error (E_OUTOFMEMORY).
namespace utils_statics {

// The connection, with the locator that it came from. Both or none.
struct DriverConnection
{
    base::ComPointer<IWbemLocator> locator;
    base::ComPointer<IWbemServices> services; // released first

    explicit operator bool() const noexcept { return static_cast<bool>(services); }
};

// Connects to the namespace of the network drivers' classes; empty when any step is refused.
DriverConnection ConnectToDrivers();

// Hands the objects that a query gives to `visit`, one at a time, until it answers true or there
// are no more. Waits for each as long as the service takes.
void VisitObjects(IWbemServices& services, const wchar_t* query,
                  const std::function<bool(IWbemClassObject&)>& visit);

} // namespace utils_statics
