// The local address and the wireless adapter.
#include <winsock2.h>

#include <gtest/gtest.h>
#include <test_support/ComScope.h>
#include <test_support/ImportHook.h>
#include <test_support/NoMemory.h>
#include <Utils_Statics/utilsExam.h>
#include <wmi_server/WmiServer.h>

#include <iphlpapi.h>
#include <ws2tcpip.h>

#include <cstddef>
#include <cstdio>
#include <set>
#include <string>

using simulation::WmiCall;
using simulation::WmiProperties;
using simulation::WmiValue;
using test_support::ImportHook;

namespace {

using Addresses = std::set<std::wstring>;

void Add(Addresses& addresses, const sockaddr* address)
{
    const std::string text = inet_ntoa(reinterpret_cast<const sockaddr_in*>(address)->sin_addr);
    addresses.emplace(text.begin(), text.end());
}

// The addresses of the host name, as another function of the platform finds them.
void AddHostAddresses(Addresses& addresses)
{
    WSADATA description;
    WSAStartup(MAKEWORD(2, 2), &description);
    char name[256] = {};
    gethostname(name, sizeof name);
    addrinfo wanted = {};
    wanted.ai_family = AF_INET;
    addrinfo* found = nullptr;
    if (getaddrinfo(name, nullptr, &wanted, &found) == 0) {
        for (const addrinfo* next = found; next; next = next->ai_next)
            Add(addresses, next->ai_addr);
        freeaddrinfo(found);
    }
    WSACleanup();
}

// The addresses of the network adapters.
void AddAdapterAddresses(Addresses& addresses)
{
    alignas(IP_ADAPTER_ADDRESSES) static std::byte buffer[1 << 17];
    ULONG size = sizeof buffer;
    auto* adapter = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer);
    if (GetAdaptersAddresses(AF_INET, 0, nullptr, adapter, &size) != NO_ERROR) return;
    for (; adapter; adapter = adapter->Next)
        for (const auto* address = adapter->FirstUnicastAddress; address; address = address->Next)
            Add(addresses, address->Address.lpSockaddr);
}

TEST(GetLocalIP, IsAnAddressOfThisComputer)
{
    Addresses addresses;
    AddHostAddresses(addresses);
    AddAdapterAddresses(addresses);
    const CString address = utilsExam::GetLocalIP();
    if (addresses.empty() && address.IsEmpty()) GTEST_SKIP() << "this computer has no address";
    EXPECT_EQ(addresses.count(address.GetString()), 1u);
}

TEST(GetLocalIP, NeedsNoNetworkFunctionsStartedAndLeavesNone)
{
    utilsExam::GetLocalIP();
    EXPECT_EQ(gethostbyname("localhost"), nullptr);
    EXPECT_EQ(WSAGetLastError(), WSANOTINITIALISED);
}

int WINAPI NoHostName(char*, int)
{
    return SOCKET_ERROR;
}

int WINAPI UnknownHostName(char* name, int size)
{
    std::snprintf(name, static_cast<std::size_t>(size), "no-such-host.invalid");
    return 0;
}

int WINAPI CheckedHostName(char* name, int size)
{
    EXPECT_EQ(size, 255);
    std::snprintf(name, static_cast<std::size_t>(size), "any");
    return 0;
}

hostent* WINAPI TwoAddresses(const char* name)
{
    static char first[] = {10, 1, 2, 3}, second[] = {10, 9, 9, 9};
    static char* addresses[] = {first, second, nullptr};
    static hostent host = {};
    host.h_addrtype = AF_INET;
    host.h_length = 4;
    host.h_addr_list = addresses;
    EXPECT_STREQ(name, "any");
    return &host;
}

hostent* WINAPI NoAddress(const char*)
{
    static char* addresses[] = {nullptr};
    static hostent host = {};
    host.h_addrtype = AF_INET;
    host.h_addr_list = addresses;
    return &host;
}

constexpr wchar_t library[] = L"Utils_Statics.dll";

TEST(GetLocalIP, IsTheFirstAddressInDottedForm)
{
    const ImportHook name(library, "gethostname", CheckedHostName);
    const ImportHook host(library, "gethostbyname", TwoAddresses);
    EXPECT_STREQ(utilsExam::GetLocalIP(), L"10.1.2.3");
}

TEST(GetLocalIP, IsEmptyWithoutAHostName)
{
    const ImportHook hook(library, "gethostname", NoHostName);
    EXPECT_STREQ(utilsExam::GetLocalIP(), L"");
}

TEST(GetLocalIP, IsEmptyForAHostNameThatDoesNotResolve)
{
    const ImportHook hook(library, "gethostname", UnknownHostName);
    EXPECT_STREQ(utilsExam::GetLocalIP(), L"");
}

TEST(GetLocalIP, IsEmptyForAHostWithoutAddresses)
{
    const ImportHook hook(library, "gethostbyname", NoAddress);
    EXPECT_STREQ(utilsExam::GetLocalIP(), L"");
}

// ---- The wireless adapter

const std::wstring query = L"SELECT * FROM MSNdis_EnumerateAdapter";

class WirelessAdapter : public testing::Test
{
protected:
    ~WirelessAdapter() override
    {
        EXPECT_EQ(server.LiveObjects(), 0);
        EXPECT_EQ(server.Misuses(), 0);
    }

    // The result for the adapters' list; the other function must agree.
    std::wstring Guid(const std::vector<WmiProperties>& adapters)
    {
        server.SetAnswer(query, adapters);
        const std::wstring guid = utilsExam::GetWirelessAdapterGuid();
        EXPECT_EQ(utilsExam::IsWirelessAdapterAvailable(), !guid.empty());
        return guid;
    }
    static WmiProperties Adapter(const wchar_t* name, const wchar_t* device)
    {
        return {{L"InstanceName", name}, {L"DeviceName", device}};
    }

    test_support::ComScope com;
    simulation::WmiServer server;
};

TEST_F(WirelessAdapter, IsTheFirstWithWirelessInItsName)
{
    EXPECT_EQ(Guid({Adapter(L"Network 1", L"\\DEVICE\\{1}"),
                    Adapter(L"A Wireless card", L"\\DEVICE\\{2}"),
                    Adapter(L"Wireless", L"\\DEVICE\\{3}")}),
              L"{2}");
}

TEST_F(WirelessAdapter, EveryDevicePrefixIsRemoved)
{
    EXPECT_EQ(Guid({Adapter(L"Wireless", L"\\DEVICE\\a\\DEVICE\\b\\device\\c")}), L"ab\\device\\c");
    EXPECT_EQ(Guid({Adapter(L"Wireless", L"{4}")}), L"{4}");
}

TEST_F(WirelessAdapter, IsEmptyWhenThereIsNone)
{
    EXPECT_EQ(Guid({}), L"");
    EXPECT_EQ(Guid({Adapter(L"Network 1", L"{1}"),
                    Adapter(L"wireless", L"{2}"),
                    {{L"DeviceName", L"{3}"}}}),
              L"");
    EXPECT_EQ(Guid({{{L"InstanceName", L"Wireless"}}}), L"") << "the first has no device name";
    EXPECT_EQ(Guid({{{L"InstanceName", L"Wireless"}, {L"DeviceName", WmiValue()}}}), L"");
}

TEST_F(WirelessAdapter, IsAskedForInTheDriversNamespace)
{
    utilsExam::GetWirelessAdapterGuid();
    const auto calls = server.TakeCalls();
    ASSERT_GE(calls.size(), 4u);
    EXPECT_EQ(calls[1], L"ConnectServer \"ROOT\\WMI\" null null null 0 null null");
    EXPECT_EQ(calls[3], L"ExecQuery \"WQL\" \"" + query + L"\" 48 null");
}

TEST_F(WirelessAdapter, IsEmptyWhenAnyCallFails)
{
    server.SetAnswer(query, {Adapter(L"Wireless", L"{5}")});
    utilsExam::GetWirelessAdapterGuid();
    const int calls = server.CallCount();
    ASSERT_EQ(calls, 7);
    for (int failing = 1; failing <= calls; ++failing) {
        server.FailCall(failing, E_FAIL);
        EXPECT_EQ(utilsExam::GetWirelessAdapterGuid(), L"") << failing;
        EXPECT_EQ(server.LiveObjects(), 0);
        server.SucceedAgain();
    }
    EXPECT_EQ(utilsExam::GetWirelessAdapterGuid(), L"{5}");
}

TEST_F(WirelessAdapter, IsEmptyWhenATextCannotBeAllocated)
{
    server.SetAnswer(query, {Adapter(L"Wireless", L"{5}")});
    const test_support::FewTexts none;
    std::wstring guid = L"?";
    EXPECT_NO_THROW(guid = utilsExam::GetWirelessAdapterGuid());
    EXPECT_EQ(guid, L"");
}

TEST(WirelessAdapterWithoutCom, IsEmpty)
{
    EXPECT_EQ(utilsExam::GetWirelessAdapterGuid(), L"");
    EXPECT_FALSE(utilsExam::IsWirelessAdapterAvailable());
}

} // namespace
