// The sample application's status row shows simulated devices, and has settings.
#include "record/MovieSettings.h"
#include "service/Settings.h"
#include "status/StatusRow.h"
#include "status/StatusSimulators.h"

#include <gtest/gtest.h>
#include <test_support/ComScope.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/CWmiService.h>

#include <afxwin.h>

#include <string>

CWinApp theApplication(L"status simulators");

namespace {

using exam::NetworkSimulator;
using exam::ProbeSimulator;

TEST(ProbeSimulator, WarmsUpAndCoolsDownAgain)
{
    constexpr double time = ProbeSimulator::heatingPeriod;
    const auto temperature = [](double seconds) {
        return ProbeSimulator::ReadingAt(seconds).temperature;
    };
    EXPECT_DOUBLE_EQ(temperature(0), ProbeSimulator::coldest);
    EXPECT_DOUBLE_EQ(temperature(time), ProbeSimulator::hottest);
    EXPECT_DOUBLE_EQ(temperature(2 * time), ProbeSimulator::coldest);
    EXPECT_NEAR(temperature(time / 2), (ProbeSimulator::coldest + ProbeSimulator::hottest) / 2,
                1e-9);
    EXPECT_NEAR(temperature(1.5 * time), temperature(0.5 * time), 1e-9);
}

TEST(ProbeSimulator, CrossesTheWarningsDefaultThreshold)
{
    constexpr double threshold = 39.8;
    EXPECT_LT(ProbeSimulator::coldest, threshold);
    EXPECT_GT(ProbeSimulator::hottest, threshold);
}

TEST(ProbeSimulator, TurnsToAndFroWithoutLeavingTheGauge)
{
    for (int tenths = 0; tenths < 2000; ++tenths) {
        const CStatusProbeSensor::SensorData reading = ProbeSimulator::ReadingAt(tenths * 0.1);
        ASSERT_GE(reading.angle, 0);
        ASSERT_LE(reading.angle, 180);
        ASSERT_TRUE(reading.isSensorSupported);
        ASSERT_GE(reading.muxVersion, 2);
    }
    EXPECT_NEAR(ProbeSimulator::ReadingAt(ProbeSimulator::turningPeriod / 2).angle, 90, 1e-9);
}

TEST(ProbeSimulator, ShowsItsReadingOnlyWhilePluggedIn)
{
    ProbeSimulator probe;
    probe.Plug(true);
    probe.Advance(3);
    EXPECT_EQ(CStatusProbeSensor::getState(), ProbeSimulator::ReadingAt(3));
    probe.SetError(true);
    EXPECT_EQ(CStatusProbeSensor::getState().errorStatus, 1);
    probe.SetError(false);
    probe.Plug(false);
    EXPECT_EQ(CStatusProbeSensor::getState(), CStatusProbeSensor::SensorData());
}

class SimulatedNetwork : public testing::Test
{
protected:
    SimulatedNetwork() { CWmiService::getInstance()->Update(); }
    ~SimulatedNetwork() override { CWmiService::destroyInstance(); }

    // The findings of a monitoring that starts now: wired, wireless connected, its signal.
    static std::string Found()
    {
        CWmiService& service = *CWmiService::getInstance();
        service.Update();
        return std::to_string(CStatusNetwork::isConnected()) +
               std::to_string(CStatusWireless::isConnected()) + " " +
               std::to_string(service.Query(
                   0, L"SELECT * FROM MSNdis_80211_ReceivedSignalStrength Where active=true"));
    }

    test_support::ComScope com;
    NetworkSimulator network;
};

TEST_F(SimulatedNetwork, IsConnectedAtFirst)
{
    EXPECT_TRUE(CStatusNetwork::isConnected());
    EXPECT_TRUE(CStatusWireless::isConnected());
    EXPECT_TRUE(CStatusWireless::isAvailable());
    EXPECT_EQ(Found(), "11 90");
}

TEST_F(SimulatedNetwork, TellsOfChangesByEvents)
{
    network.ConnectWired(false);
    EXPECT_FALSE(CStatusNetwork::isConnected());
    EXPECT_TRUE(CStatusWireless::isConnected());
    network.ConnectWireless(false);
    EXPECT_FALSE(CStatusWireless::isConnected());
    network.PlugWireless(false);
    EXPECT_FALSE(CStatusWireless::isAvailable());
    network.PlugWireless(true);
    EXPECT_TRUE(CStatusWireless::isAvailable());
    network.ConnectWired(true);
    network.ConnectWireless(true);
    EXPECT_TRUE(CStatusNetwork::isConnected());
    EXPECT_TRUE(CStatusWireless::isConnected());
}

TEST_F(SimulatedNetwork, AnswersWhatItTold)
{
    network.SetSignal(-80);
    EXPECT_EQ(Found(), "11 40");
    network.ConnectWired(false);
    EXPECT_EQ(Found(), "01 40");
    network.ConnectWireless(false);
    EXPECT_EQ(Found(), "00 40");
}

class RegistrySettings : public testing::Test
{
protected:
    RegistrySettings()
    {
        theApplication.SetRegistryKey(m_key.Path().c_str() + std::wstring(L"Software\\").size());
    }

    test_support::TemporaryRegistryKey m_key;
};

TEST_F(RegistrySettings, AreReadAsTheyWereWritten)
{
    EXPECT_EQ(exam::ReadSettings(), exam::Settings());
    const exam::Settings chosen{L"none such", L"75", L"D:\\loops", L"D:\\log",
                                L"cm",        L"de", L"large",     L"Tavren"};
    EXPECT_TRUE(exam::WriteSettings(chosen, exam::Settings()));
    EXPECT_EQ(exam::ReadSettings(), chosen);
    // The library reads the quality as a number.
    EXPECT_EQ(theApplication.GetProfileInt(L"Settings\\Capture", L"RecordQuality", -1), 75u);
    exam::RemoveSettings();
    EXPECT_EQ(exam::ReadSettings(), exam::Settings());
}

TEST_F(RegistrySettings, AQualityThatIsATextBecomesANumber)
{
    theApplication.WriteProfileString(L"Settings\\Capture", L"RecordQuality", L"40");
    EXPECT_EQ(exam::ReadSettings().quality, L"40");
    EXPECT_TRUE(exam::PrepareMovieSettings());
    EXPECT_EQ(theApplication.GetProfileInt(L"Settings\\Capture", L"RecordQuality", -1), 40u);
}

TEST_F(RegistrySettings, AreAsShippedWhereTheProfileSaysNothingKnown)
{
    for (const wchar_t* const entry : {L"Units", L"Language", L"Icons", L"Console"})
        theApplication.WriteProfileString(L"Settings\\Exam", entry, L"inches");
    EXPECT_EQ(exam::ReadSettings(), exam::Settings());
}

TEST_F(RegistrySettings, OfDevicesAreAsShippedUntilTheyAreChosen)
{
    int on = 0;
    for (const exam::StatusSetting& device : exam::DeviceSettings()) {
        on += exam::IsWanted(device);
        exam::SetWanted(device, !device.isShipped);
        EXPECT_NE(exam::IsWanted(device), device.isShipped);
    }
    EXPECT_EQ(on, 3); // network, wireless adapter and wireless network
    exam::RemoveSettings();
    for (const exam::StatusSetting& device : exam::DeviceSettings())
        EXPECT_EQ(exam::IsWanted(device), device.isShipped);
}

TEST(StatusSettings, AreNumbersOfTheProfile)
{
    const test_support::TemporaryRegistryKey key;
    theApplication.SetRegistryKey(key.Path().c_str() + std::wstring(L"Software\\").size());
    ASSERT_EQ(exam::StatusSettings().size(), 7u);
    for (const exam::StatusSetting& setting : exam::StatusSettings()) {
        EXPECT_FALSE(exam::IsWanted(setting));
        exam::SetWanted(setting, true);
        EXPECT_TRUE(exam::IsWanted(setting));
        EXPECT_EQ(theApplication.GetProfileInt(L"Settings\\Status", setting.entry, 0), 1u);
    }
    EXPECT_TRUE(exam::IsAddressWanted());
    exam::SetWanted(exam::StatusSettings().back(), false);
    EXPECT_FALSE(exam::IsAddressWanted());
}

} // namespace
