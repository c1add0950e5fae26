#pragma once

#include <gtest/gtest.h>
#include <test_support/ComScope.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/CWmiService.h>
#include <wmi_server/WmiServer.h>

#include <atomic>
#include <string>
#include <vector>

// The texts of the queries, as the service must receive them.
inline const std::wstring signalQuery =
    L"SELECT * FROM MSNdis_80211_ReceivedSignalStrength Where active=true";
inline const std::wstring wiredQuery =
    L"SELECT * FROM MSNdis_MediaConnectStatus WHERE InstanceName NOT LIKE %%Wireless%%";
inline const std::wstring wirelessQuery =
    L"SELECT * FROM MSNdis_MediaConnectStatus WHERE InstanceName LIKE %%Wireless%%";
inline const std::wstring adapterQuery = L"SELECT * FROM MSNdis_EnumerateAdapter";

inline constexpr std::int32_t signalMode = 0, mediaMode = 1, adapterMode = 2;

// Adapters as the drivers describe them.
inline simulation::WmiProperties Signal(std::int32_t level)
{
    return {{L"InstanceName", L"Some adapter"}, {L"Ndis80211ReceivedSignalStrength", level}};
}
inline simulation::WmiProperties Media(const wchar_t* name, std::int32_t status)
{
    return {{L"InstanceName", name}, {L"NdisMediaConnectStatus", status}};
}
inline simulation::WmiProperties Adapter(const wchar_t* name)
{
    return {{L"InstanceName", name}, {L"DeviceName", L"\\DEVICE\\{0}"}};
}
inline simulation::WmiProperties Event(const wchar_t* eventClass, const wchar_t* name)
{
    return {{L"__CLASS", eventClass}, {L"InstanceName", name}};
}

// A management service in process, with nothing connected to it. At the end every object must have
// been released, and none used after that.
class WmiTest : public testing::Test
{
protected:
    WmiTest()
    {
        SetStates(false);
        repaints = 0;
        IStatusItem::SetStatusCallback([] { ++repaints; });
    }
    ~WmiTest() override
    {
        IStatusItem::SetStatusCallback(nullptr);
        CWmiService::destroyInstance();
        server.ReleaseSinks();
        EXPECT_EQ(server.LiveObjects(), 0);
        EXPECT_EQ(server.Misuses(), 0);
    }

    static void SetStates(bool state)
    {
        CStatusNetwork::setState(state);
        CStatusWireless::setConnected(state);
        CStatusWireless::setAvailable(state);
    }
    // The three states in the order wired, wireless connected, wireless available.
    static std::vector<bool> States()
    {
        return {CStatusNetwork::getState(), CStatusWireless::isConnected(),
                CStatusWireless::isAvailable()};
    }
    static CWmiService& Service() { return *CWmiService::getInstance(); }

    inline static std::atomic<int> repaints = 0;

    test_support::ComScope com;
    simulation::WmiServer server;
};
