// The monitoring connects, subscribes and lets go, with failures at every step.
#include "WmiFixture.h"

#include <test_support/NoMemory.h>

#include <comdef.h>

#include <algorithm>

using simulation::SinkReferences;
using simulation::WmiCall;

namespace {

using Counts = std::vector<ULONG>;

const std::vector<std::wstring> connectCalls = {
    L"CreateLocator", L"ConnectServer \"ROOT\\WMI\" null null null 0 null null",
    L"SetBlanket 10 0 null 3 3 null 0"};

const std::vector<std::wstring> subscribeCalls = {
    L"Subscribe \"WQL\" \"SELECT * FROM MSNdis_StatusLinkSpeedChange\" 0 null",
    L"Subscribe \"WQL\" \"SELECT * FROM MSNdis_StatusMediaConnect\" 0 null",
    L"Subscribe \"WQL\" \"SELECT * FROM MSNdis_StatusMediaDisconnect\" 0 null",
    L"Subscribe \"WQL\" \"SELECT * FROM MSNdis_NotifyAdapterArrival\" 0 null",
    L"Subscribe \"WQL\" \"SELECT * FROM MSNdis_NotifyAdapterRemoval\" 0 null"};

const std::vector<std::wstring> cancelCall = {L"CancelAsyncCall given"};

std::vector<std::wstring> operator+(std::vector<std::wstring> a, const std::vector<std::wstring>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

using WmiConnection = WmiTest;

TEST_F(WmiConnection, TheFirstCallConnectsAndSubscribesInOrder)
{
    CWmiService* const service = CWmiService::getInstance();
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(server.TakeCalls(), connectCalls + subscribeCalls);
    EXPECT_EQ(CWmiService::getInstance(), service);
    EXPECT_TRUE(server.TakeCalls().empty()) << "connected once";
    EXPECT_EQ(repaints, 0);
}

TEST_F(WmiConnection, DestroyingCancelsAndReleasesEverything)
{
    CWmiService::getInstance();
    EXPECT_EQ(server.LiveObjects(), 2) << "locator and services";
    server.TakeCalls();
    CWmiService::destroyInstance();
    EXPECT_EQ(server.TakeCalls(), cancelCall);
    EXPECT_EQ(server.LiveObjects(), 0);
    EXPECT_TRUE(server.Sinks().empty());
    CWmiService::destroyInstance();
    EXPECT_TRUE(server.TakeCalls().empty()) << "nothing is left to destroy";
}

TEST_F(WmiConnection, AfterDestructionANewInstanceConnectsAnew)
{
    CWmiService::getInstance();
    CWmiService::destroyInstance();
    server.TakeCalls();
    CWmiService::getInstance();
    EXPECT_EQ(server.TakeCalls(), connectCalls + subscribeCalls);
}

TEST_F(WmiConnection, OnlyThePlatformsReferencesAreCounted)
{
    CWmiService::getInstance();
    EXPECT_EQ(server.SinkCounts(), (Counts{1, 2, 3, 4, 5}));
}

TEST_F(WmiConnection, InitializingAgainEndsTheFormerConnectionFirst)
{
    Service();
    server.TakeCalls();
    EXPECT_TRUE(Service().Initialize());
    EXPECT_EQ(server.TakeCalls(), cancelCall + connectCalls + subscribeCalls);
    EXPECT_EQ(server.LiveObjects(), 2);
    EXPECT_EQ(server.Sinks().size(), 5u);
}

TEST_F(WmiConnection, DestroyMayBeCalledTwice)
{
    Service().Destroy();
    server.TakeCalls();
    Service().Destroy();
    EXPECT_TRUE(server.TakeCalls().empty());
    EXPECT_EQ(Service().Query(adapterMode, adapterQuery.c_str()), -1);
    EXPECT_TRUE(Service().Initialize());
}

class FailingStep : public WmiConnection, public testing::WithParamInterface<WmiCall>
{
};

TEST_P(FailingStep, LeavesAnInstanceThatIsNotConnected)
{
    server.Fail(GetParam(), E_ACCESSDENIED);
    EXPECT_FALSE(Service().Initialize());
    EXPECT_EQ(server.LiveObjects(), 0);
    EXPECT_TRUE(server.Sinks().empty());
    server.TakeCalls();
    EXPECT_EQ(Service().Query(adapterMode, adapterQuery.c_str()), -1);
    EXPECT_TRUE(server.TakeCalls().empty());
    Service().Update();
    EXPECT_EQ(States(), (std::vector{true, true, true}));

    server.SucceedAgain();
    EXPECT_TRUE(Service().Initialize());
}

INSTANTIATE_TEST_SUITE_P(Each, FailingStep,
                         testing::Values(WmiCall::createLocator, WmiCall::connectServer,
                                         WmiCall::setBlanket));

TEST_F(WmiConnection, SuccessWithoutAnObjectIsAFailureToo)
{
    for (const WmiCall call : {WmiCall::createLocator, WmiCall::connectServer}) {
        server.Fail(call, S_OK);
        EXPECT_FALSE(Service().Initialize());
        EXPECT_EQ(server.LiveObjects(), 0);
        server.SucceedAgain();
    }
}

TEST_F(WmiConnection, WithoutComThereIsNoConnection)
{
    CWmiService* service = nullptr;
    std::int32_t answer = 0;
    CoUninitialize();
    service = CWmiService::getInstance();
    answer = service->Query(adapterMode, adapterQuery.c_str());
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    EXPECT_NE(service, nullptr);
    EXPECT_EQ(answer, -1);
}

TEST_F(WmiConnection, OnlyTheLastSubscriptionDecidesTheResult)
{
    Service();
    for (int refused = 1; refused <= 5; ++refused) {
        server.TakeCalls();
        server.Fail(WmiCall::subscribe, static_cast<HRESULT>(WBEM_E_INVALID_PARAMETER), refused);
        EXPECT_EQ(Service().Initialize(), refused != 5) << refused;
        const auto calls = server.TakeCalls();
        EXPECT_EQ(std::ranges::count_if(
                      calls, [](const auto& call) { return call.starts_with(L"Subscribe"); }),
                  5)
            << "all five are asked for";
        EXPECT_EQ(server.Sinks().size(), 4u);
        EXPECT_EQ(server.LiveObjects(), 2) << "the connection stays";
        server.SucceedAgain();
    }
}

TEST_F(WmiConnection, QueriesWorkWithoutAnySubscription)
{
    server.Fail(WmiCall::subscribe, E_FAIL);
    server.SetAnswer(adapterQuery, {Adapter(L"Wireless")});
    EXPECT_FALSE(Service().Initialize());
    EXPECT_EQ(Service().Query(adapterMode, adapterQuery.c_str()), 1);
}

// Between two subscriptions the sink has no reference, but must live on.
TEST_F(WmiConnection, AServiceThatRefusesAfterTouchingTheSinkDoesNotDestroyIt)
{
    server.SetSinkReferences(SinkReferences::dropped);
    server.Fail(WmiCall::subscribe, E_FAIL);
    EXPECT_FALSE(Service().Initialize());
    CWmiService::destroyInstance();
    EXPECT_EQ(server.TakeCalls().back(), L"CancelAsyncCall given");
}

TEST_F(WmiConnection, AServiceThatTakesNoReferencesCanStillDeliver)
{
    server.SetSinkReferences(SinkReferences::notTaken);
    Service();
    EXPECT_EQ(server.Deliver({Event(L"MSNdis_StatusMediaConnect", L"Network 1")}), 1);
    EXPECT_TRUE(CStatusNetwork::getState());
    EXPECT_EQ(server.Deliver({Event(L"MSNdis_StatusMediaDisconnect", L"Network 1")}), 1);
    EXPECT_FALSE(CStatusNetwork::getState());
}

TEST_F(WmiConnection, TheSinkOutlivesTheServiceAsLongAsThePlatformHoldsIt)
{
    server.SetSinkReferences(SinkReferences::untilReleased);
    Service();
    CWmiService::destroyInstance();
    const int before = repaints;
    EXPECT_EQ(server.Deliver({Event(L"MSNdis_StatusMediaConnect", L"Network 1")}), 1);
    EXPECT_FALSE(CStatusNetwork::getState()) << "nothing is shown any more";
    EXPECT_EQ(repaints, before);
    EXPECT_EQ(server.ReleaseSinks(), (Counts{4, 3, 2, 1, 0}));
}

TEST_F(WmiConnection, ThePlatformMayReleaseTheSinkBeforeTheServiceGoes)
{
    server.SetSinkReferences(SinkReferences::untilReleased);
    Service();
    EXPECT_EQ(server.ReleaseSinks(), (Counts{4, 3, 2, 1, 0}));
    CWmiService::destroyInstance();
    EXPECT_EQ(server.TakeCalls().back(), L"CancelAsyncCall given") << "with a sink that lives";
}

TEST_F(WmiConnection, AnExceptionOfTheCancellationEndsTheDestructionThere)
{
    server.SetSinkReferences(SinkReferences::untilReleased);
    Service();
    const auto sinks = server.Sinks();
    server.Throw(WmiCall::cancel);
    Service().Destroy();
    EXPECT_EQ(server.LiveObjects(), 2) << "services and locator are as they were";
    server.Deliver({Event(L"MSNdis_StatusMediaConnect", L"Network 1")});
    EXPECT_FALSE(CStatusNetwork::getState()) << "events are over in any case";
    server.SucceedAgain();
    server.TakeCalls();
    Service().Destroy();
    EXPECT_EQ(server.TakeCalls(), cancelCall);
    EXPECT_EQ(server.LiveObjects(), 0);
}

TEST_F(WmiConnection, EventsThatComeDuringTheCancellationAreDropped)
{
    Service();
    int delivered = 0;
    server.OnCancel(
        [&] { delivered = server.Deliver({Event(L"MSNdis_StatusMediaConnect", L"Network 1")}); });
    CWmiService::destroyInstance();
    server.OnCancel(nullptr);
    EXPECT_EQ(delivered, 1);
    EXPECT_FALSE(CStatusNetwork::getState());
}

// Every call of a whole life fails once. Nothing may leak, throw or be used after its release.
TEST_F(WmiConnection, AFailureOfAnySingleCallLeavesNothingBehind)
{
    server.SetAnswer(signalQuery, {Signal(-60)});
    server.SetAnswer(wiredQuery, {Media(L"Network 1", 0), Media(L"NIC 2", 1)});
    server.SetAnswer(wirelessQuery, {Media(L"Wireless 1", 0)});
    server.SetAnswer(adapterQuery, {Adapter(L"NIC 2"), Adapter(L"Wireless 1")});
    const auto live = [&] {
        const int before = server.CallCount();
        CWmiService::getInstance()->Update();
        server.Deliver({Event(L"MSNdis_NotifyAdapterRemoval", L"Wireless 1")});
        server.Deliver({Event(L"MSNdis_StatusMediaDisconnect", L"NIC 2")});
        CWmiService::destroyInstance();
        return server.CallCount() - before;
    };
    const int calls = live();
    ASSERT_GT(calls, 25);
    const HRESULT results[] = {E_FAIL, static_cast<HRESULT>(WBEM_E_TRANSPORT_FAILURE),
                               E_OUTOFMEMORY};
    for (int failing = 1; failing <= calls; ++failing) {
        server.FailCall(failing, results[failing % 3]);
        live();
        server.SucceedAgain();
        server.ReleaseSinks(); // here the failing call was the cancellation
        ASSERT_EQ(server.LiveObjects(), 0) << "call " << failing;
        ASSERT_EQ(server.Misuses(), 0) << "call " << failing;
    }
}

TEST_F(WmiConnection, ANamespacesNameThatCannotBeAllocatedIsRaised)
{
    {
        const test_support::FewTexts few;
        try {
            CWmiService::getInstance();
            ADD_FAILURE() << "nothing was raised";
        } catch (const _com_error& error) {
            EXPECT_EQ(error.Error(), E_OUTOFMEMORY);
        }
        EXPECT_EQ(server.LiveObjects(), 0);
    }
    EXPECT_EQ(server.TakeCalls(), std::vector<std::wstring>{L"CreateLocator"});
    Service();
    EXPECT_EQ(server.TakeCalls(), connectCalls + subscribeCalls) << "a later call starts over";
}

// Each subscription needs two texts, after one for the namespace's name.
TEST_F(WmiConnection, ASubscriptionWhoseTextsCannotBeAllocatedIsARefusedOne)
{
    Service();
    const test_support::FewTexts few;
    for (int texts = 1; texts <= 11; ++texts) {
        test_support::FewTexts::Allow(texts);
        EXPECT_EQ(Service().Initialize(), texts == 11) << texts;
        EXPECT_EQ(server.Sinks().size(), static_cast<std::size_t>((texts - 1) / 2)) << texts;
        EXPECT_EQ(server.LiveObjects(), 2) << "the connection stays";
    }
}

TEST_F(WmiConnection, AQueryWhoseTextsCannotBeAllocatedIsNotRun)
{
    server.SetAnswer(adapterQuery, {Adapter(L"Wireless")});
    Service();
    server.TakeCalls();
    const test_support::FewTexts few;
    for (int texts = 0; texts <= 2; ++texts) {
        test_support::FewTexts::Allow(texts);
        std::int32_t answer = 0;
        EXPECT_NO_THROW(answer = Service().Query(adapterMode, adapterQuery.c_str()));
        EXPECT_EQ(answer, texts == 2 ? 1 : -1);
        EXPECT_EQ(server.TakeCalls().empty(), texts < 2);
    }
    test_support::FewTexts::Allow(0);
    SetStates(false);
    EXPECT_NO_THROW(Service().Update());
    EXPECT_EQ(States(), (std::vector{true, true, true}));
}

// Without a class of this process the platform's own service answers, or none.
TEST(PlatformsOwnService, IsUsedWhereThereIsOne)
{
    const test_support::ComScope com;
    CWmiService& service = *CWmiService::getInstance();
    service.Update();
    const std::int32_t connected = service.Query(mediaMode, wiredQuery.c_str());
    EXPECT_TRUE(connected >= -1 && connected <= 1) << connected;
    EXPECT_LE(service.Query(signalMode, signalQuery.c_str()), 100);
    CWmiService::destroyInstance();
}

} // namespace
