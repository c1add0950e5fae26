// utilsExam: network facts that are shown to the user.
#include <winsock2.h>

#include "Utils_Statics/utilsExam.h"

#include "environment/PathText.h"
#include "network/NetworkDrivers.h"

using namespace utils_statics;

namespace {

// Starts the platform's network functions while the object lives. The application's own use of them
// is not affected.
class NetworkFunctions
{
public:
    NetworkFunctions() noexcept : m_started(WSAStartup(MAKEWORD(2, 2), &m_description) == 0) {}
    ~NetworkFunctions()
    {
        if (m_started) WSACleanup();
    }
    NetworkFunctions(const NetworkFunctions&) = delete;
    NetworkFunctions& operator=(const NetworkFunctions&) = delete;

private:
    WSADATA m_description = {};
    bool m_started;
};

} // namespace

CString utilsExam::GetLocalIP()
{
    const NetworkFunctions started;
    char name[255] = {};
    if (gethostname(name, sizeof name) != 0) return CString();
    const hostent* const host = gethostbyname(name);
    if (!host || host->h_addrtype != AF_INET || !host->h_addr_list[0]) return CString();
    const char* const address = inet_ntoa(*reinterpret_cast<const in_addr*>(host->h_addr_list[0]));
    return CString(address);
}

std::wstring utilsExam::GetWirelessAdapterGuid()
try {
    const DriverConnection connection = ConnectToDrivers();
    if (!connection) return {};
    QueryResult adapters(*connection.services.get(), L"SELECT * FROM MSNdis_EnumerateAdapter");
    while (const auto adapter = adapters.Next()) {
        if (!IsWirelessName(InstanceName(*adapter.get()))) continue;
        std::wstring device(TextProperty(*adapter.get(), L"DeviceName").View());
        RemoveAll(device, L"\\DEVICE\\");
        return device;
    }
    return {};
} catch (const _com_error&) { // memory is short
    return {};
}

bool utilsExam::IsWirelessAdapterAvailable()
{
    return !GetWirelessAdapterGuid().empty();
}
