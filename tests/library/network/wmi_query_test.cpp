// The monitoring's questions, and what it makes of the answers.
#include "WmiFixture.h"

#include <chrono>
#include <climits>

using simulation::WmiCall;
using simulation::WmiProperties;
using simulation::WmiValue;

namespace {

using WmiQuery = WmiTest;

class WmiAnswer : public WmiTest
{
protected:
    // The answer to a query that returns these objects.
    std::int32_t Answer(std::int32_t mode, const std::vector<WmiProperties>& objects)
    {
        server.SetAnswer(L"the query", objects);
        return Service().Query(mode, L"the query");
    }
};

TEST_F(WmiQuery, IsRunForwardOnlyAndFetchedOneByOne)
{
    server.SetAnswer(adapterQuery, {Adapter(L"NIC"), Adapter(L"Wireless")});
    Service();
    server.TakeCalls();
    EXPECT_EQ(Service().Query(adapterMode, adapterQuery.c_str()), 1);
    EXPECT_EQ(server.TakeCalls(),
              (std::vector<std::wstring>{L"ExecQuery \"WQL\" \"" + adapterQuery + L"\" 48 null",
                                         L"Next -1 1", L"Get InstanceName", L"Next -1 1",
                                         L"Get InstanceName"}))
        << "and stops at the first that fits";
}

TEST_F(WmiQuery, UpdatePollsTheFourQuestionsInOrder)
{
    Service();
    server.TakeCalls();
    Service().Update();
    std::vector<std::wstring> queries;
    for (const std::wstring& call : server.TakeCalls())
        if (call.starts_with(L"ExecQuery")) queries.push_back(call);
    std::vector<std::wstring> expected;
    for (const std::wstring& query : {signalQuery, wiredQuery, wirelessQuery, adapterQuery})
        expected.push_back(L"ExecQuery \"WQL\" \"" + query + L"\" 48 null");
    EXPECT_EQ(queries, expected);
    EXPECT_EQ(repaints, 3) << "one for each of the states, also when nothing changed";
}

TEST_F(WmiQuery, WithoutAdaptersEverythingCountsAsConnected)
{
    Service().Update();
    EXPECT_EQ(States(), (std::vector{true, true, true}));
}

TEST_F(WmiQuery, UpdateShowsEachStateByItself)
{
    for (int states = 0; states < 8; ++states) {
        const bool wired = states & 1, wireless = states & 2;
        server.SetAnswer(wiredQuery, {Media(L"Network 1", wired ? 0 : 1)});
        server.SetAnswer(wirelessQuery, {Media(L"Wireless 1", wireless ? 0 : 1)});
        SetStates(!wired);
        Service().Update();
        EXPECT_EQ(CStatusNetwork::getState(), wired);
        EXPECT_EQ(CStatusNetwork::isConnected(), wired);
        EXPECT_EQ(CStatusWireless::isConnected(), wireless);
        EXPECT_TRUE(CStatusWireless::isAvailable()) << "only an event can take it away";
    }
}

TEST_F(WmiAnswer, ASignalLevelBecomesAQualityOfAtMost100)
{
    const struct
    {
        std::int32_t level, quality;
    } rows[] = {{-60, 80},      {-50, 100},
                {-49, 100},     {0, 100},
                {-100, 0},      {-110, -20},
                {-90, 20},      {-91, 18},
                {-51, 98},      {-200, -200},
                {100, 100},     {-75, 50},
                {INT_MAX, 100}, {1 << 30, -2147483448}};
    for (const auto& row : rows)
        EXPECT_EQ(Answer(signalMode, {Signal(row.level)}), row.quality) << row.level;
}

TEST_F(WmiAnswer, TheFirstSignalThatCanBeReadCounts)
{
    EXPECT_EQ(Answer(signalMode, {{},
                                  {{L"Ndis80211ReceivedSignalStrength", WmiValue()}},
                                  {{L"Ndis80211ReceivedSignalStrength", L"-60"}},
                                  Signal(-70),
                                  Signal(-60)}),
              60);
    EXPECT_EQ(Answer(signalMode, {{}}), -1);
    EXPECT_EQ(Answer(signalMode, {}), -1);
}

TEST_F(WmiAnswer, AMediaStateIsConnectedWhenItsLow16BitsAre0)
{
    for (const wchar_t* const name :
         {L"Intel Wireless 1", L"Network 1", L"NIC 1", L"RealtekNICs"}) {
        EXPECT_EQ(Answer(mediaMode, {Media(name, 0)}), 1);
        EXPECT_EQ(Answer(mediaMode, {Media(name, 1)}), 0);
        EXPECT_EQ(Answer(mediaMode, {Media(name, 0x10000)}), 1);
        EXPECT_EQ(Answer(mediaMode, {Media(name, 0x18000)}), 0);
        EXPECT_EQ(Answer(mediaMode, {Media(name, -65536)}), 1);
        EXPECT_EQ(Answer(mediaMode, {Media(name, -1)}), 0);
    }
}

TEST_F(WmiAnswer, AMediaStateOf16BitsIsRead)
{
    WmiProperties adapter = Media(L"NIC", 0);
    adapter[L"NdisMediaConnectStatus"] = std::int16_t{1};
    EXPECT_EQ(Answer(mediaMode, {adapter}), 0);
    adapter[L"NdisMediaConnectStatus"] = std::int16_t{0};
    EXPECT_EQ(Answer(mediaMode, {adapter}), 1);
}

TEST_F(WmiAnswer, OtherAdaptersHaveNoMediaState)
{
    for (const wchar_t* const name : {L"Ethernet 1", L"wireless", L"network", L"Nic", L"", L"NI C"})
        EXPECT_EQ(Answer(mediaMode, {Media(name, 0)}), -1);
}

TEST_F(WmiAnswer, TheFirstAdapterWithAKnownStateCounts)
{
    const WmiProperties unreadable = {{L"InstanceName", L"Wireless Network 1"}};
    const WmiProperties unknown = {{L"InstanceName", L"NIC 1"},
                                   {L"NdisMediaConnectStatus", WmiValue()}};
    const WmiProperties nameless = {{L"NdisMediaConnectStatus", 0}};
    const WmiProperties numbered = {{L"InstanceName", 4711}, {L"NdisMediaConnectStatus", 0}};
    EXPECT_EQ(Answer(mediaMode, {unreadable, unknown, nameless, numbered, Media(L"Ethernet", 0),
                                 Media(L"Network 2", 1), Media(L"Network 3", 0)}),
              0);
    EXPECT_EQ(Answer(mediaMode, {unreadable, unknown, nameless, numbered}), -1);
}

TEST_F(WmiAnswer, AWirelessAdapterIsKnownByItsName)
{
    EXPECT_EQ(Answer(adapterMode, {Adapter(L"NIC"), Adapter(L"My Wireless card")}), 1);
    EXPECT_EQ(Answer(adapterMode, {Adapter(L"NIC"), Adapter(L"wireless")}), -1);
    EXPECT_EQ(Answer(adapterMode, {{}, {{L"InstanceName", 7}}}), -1);
}

TEST_F(WmiAnswer, AnyOtherModeGoesThroughAllObjectsAndFindsNothing)
{
    for (const std::int32_t mode : {3, -1, INT_MAX, INT_MIN}) {
        server.TakeCalls();
        EXPECT_EQ(Answer(mode, {Signal(-60), Media(L"Wireless", 0)}), -1);
        EXPECT_EQ(server.TakeCalls().back(), L"Next -1 1");
    }
}

TEST_F(WmiAnswer, AQueryThatFailsAnywhereGivesWhatItHasFound)
{
    server.Fail(WmiCall::execQuery, static_cast<HRESULT>(WBEM_E_INVALID_QUERY), 1);
    EXPECT_EQ(Answer(signalMode, {Signal(-60)}), -1);
    server.Fail(WmiCall::execQuery, S_OK, 1);
    EXPECT_EQ(Answer(signalMode, {Signal(-60)}), -1) << "no enumerator";
    server.Fail(WmiCall::next, E_FAIL, 1);
    EXPECT_EQ(Answer(signalMode, {Signal(-60)}), -1);
    server.Fail(WmiCall::next, S_OK, 1);
    EXPECT_EQ(Answer(signalMode, {Signal(-60)}), -1) << "no object";
    server.Fail(WmiCall::get, E_FAIL, 1);
    EXPECT_EQ(Answer(signalMode, {Signal(-60), Signal(-70)}), 60) << "the next object";
    EXPECT_EQ(Answer(signalMode, {Signal(-60)}), 80);
}

TEST_F(WmiAnswer, ANullQueryIsAnEmptyOne)
{
    server.SetAnswer(L"", {Adapter(L"Wireless")});
    EXPECT_EQ(Service().Query(adapterMode, nullptr), 1);
}

TEST_F(WmiAnswer, AQuestionWaitsAsLongAsTheServiceTakes)
{
    using namespace std::chrono;
    Service();
    server.SetDelay(milliseconds(300));
    const auto start = steady_clock::now();
    EXPECT_EQ(Answer(signalMode, {Signal(-60)}), 80);
    EXPECT_GE(steady_clock::now() - start, milliseconds(290));
}

} // namespace
