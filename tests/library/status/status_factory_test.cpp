// The registry of the items, with items of the test's own and with the real ones.
#include "StatusFixture.h"

#include <test_support/ChildTest.h>
#include <test_support/ComScope.h>
#include <Utils_Statics/CStatusBurning.h>
#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/CStatusFtpTransfer.h>
#include <Utils_Statics/CStatusGps.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/CWmiService.h>
#include <wmi_server/WmiServer.h>

#include <type_traits>
#include <vector>

namespace {

using Names = std::vector<std::string>;

Names s_destroyed;

// Records its own end.
class NamedItem : public IStatusItem
{
public:
    explicit NamedItem(std::string name) : m_name(std::move(name)) {}
    ~NamedItem() override { s_destroyed.push_back(m_name); }

    void issueUpdate() const override { IssueStatusUpdate(); }
    void updateVisibleState() override {}
    bool isVisible() const override { return true; }
    int drawIcon(const CRect& rect, Gdiplus::Graphics&) const override { return rect.Width() / 2; }

private:
    std::string m_name;
};

class StatusFactory : public StatusTest
{
protected:
    StatusFactory()
    {
        s_destroyed.clear();
        CStatusNetwork::setState(false);
        repaints = 0;
    }
    ~StatusFactory() override
    {
        CStatusFactory::destroyInstance();
        EXPECT_EQ(server.LiveObjects(), 0);
        EXPECT_EQ(server.Misuses(), 0);
    }

    // The number of questions to the network since the last call.
    int Queries()
    {
        int count = 0;
        for (const std::wstring& call : server.TakeCalls())
            count += call.starts_with(L"ExecQuery");
        return count;
    }

    test_support::ComScope com;
    simulation::WmiServer server;
};

TEST_F(StatusFactory, StartsEmpty)
{
    EXPECT_TRUE(CStatusFactory::getItems().empty());
    EXPECT_TRUE(server.TakeCalls().empty()) << "nothing is connected yet";
}

TEST_F(StatusFactory, KeepsTheItemsInTheOrderOfRegistration)
{
    std::vector<IStatusItem*> added;
    for (const char* const name : {"c", "a", "b"}) {
        added.push_back(new NamedItem(name));
        CStatusFactory::addItem(added.back());
    }
    EXPECT_EQ(CStatusFactory::getItems(), added);
    EXPECT_EQ(&CStatusFactory::getItems(), &CStatusFactory::getItems()) << "the registry itself";
    CStatusFactory::destroyInstance();
    EXPECT_EQ(s_destroyed, (Names{"c", "a", "b"}));
    EXPECT_TRUE(CStatusFactory::getItems().empty());
}

TEST_F(StatusFactory, ConnectsWithTheFirstItemAndPollsWithEach)
{
    CStatusFactory::addItem(new NamedItem("a"));
    const auto calls = server.TakeCalls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front(), L"CreateLocator");
    EXPECT_EQ(repaints, 3) << "one poll, three states";
    CStatusFactory::addItem(new NamedItem("b"));
    EXPECT_EQ(Queries(), 4);
    EXPECT_EQ(repaints, 6);
    EXPECT_TRUE(CStatusNetwork::getState());
}

std::vector<std::size_t> s_counts;

TEST_F(StatusFactory, PollsWhenTheItemIsRegistered)
{
    s_counts.clear();
    IStatusItem::SetStatusCallback([] { s_counts.push_back(CStatusFactory::getItems().size()); });
    CStatusFactory::addItem(new NamedItem("a"));
    CStatusFactory::addItem(new NamedItem("b"));
    EXPECT_EQ(s_counts, (std::vector<std::size_t>{1, 1, 1, 2, 2, 2}));
}

TEST_F(StatusFactory, TakesTheSameItemTwiceAndNull)
{
    auto* const item = new NamedItem("twice");
    CStatusFactory::addItem(item);
    CStatusFactory::addItem(item);
    CStatusFactory::addItem(nullptr);
    EXPECT_EQ(CStatusFactory::getItems(), (std::vector<IStatusItem*>{item, item, nullptr}));
    CStatusFactory::getItems().erase(CStatusFactory::getItems().begin());
    CStatusFactory::destroyInstance();
    EXPECT_EQ(s_destroyed, Names{"twice"}) << "null is passed over";
}

TEST_F(StatusFactory, GrowsByDoubling)
{
    auto& items = CStatusFactory::getItems();
    items.shrink_to_fit();
    std::vector<std::size_t> capacities;
    for (int i = 0; i < 9; ++i) {
        CStatusFactory::addItem(new NamedItem("n"));
        capacities.push_back(items.capacity());
    }
    EXPECT_EQ(capacities, (std::vector<std::size_t>{1, 2, 4, 4, 8, 8, 8, 8, 16}));
    CStatusFactory::destroyInstance();
    EXPECT_EQ(items.capacity(), 16u) << "the storage is kept";
    EXPECT_TRUE(items.empty());
}

TEST_F(StatusFactory, DestroyingAnEmptyRegistryEndsTheMonitoringToo)
{
    CWmiService::getInstance();
    EXPECT_EQ(server.LiveObjects(), 2);
    CStatusFactory::destroyInstance();
    EXPECT_EQ(server.LiveObjects(), 0);
    EXPECT_EQ(server.TakeCalls().back(), L"CancelAsyncCall given");
}

// The items end before the monitoring does.
bool s_wasConnected;
simulation::WmiServer* s_server;

class WatchingItem : public NamedItem
{
public:
    WatchingItem() : NamedItem("watching") {}
    ~WatchingItem() override { s_wasConnected = s_server->LiveObjects() == 2; }
};

TEST_F(StatusFactory, DestroysTheItemsBeforeItEndsTheMonitoring)
{
    s_server = &server;
    CStatusFactory::addItem(new WatchingItem);
    CStatusFactory::destroyInstance();
    EXPECT_TRUE(s_wasConnected);
    EXPECT_EQ(server.LiveObjects(), 0);
}

// Receives an event while the items end.
class TellingItem : public NamedItem
{
public:
    TellingItem() : NamedItem("telling") {}
    ~TellingItem() override
    {
        delivered = s_server->Deliver(
            {{{L"__CLASS", L"MSNdis_StatusMediaDisconnect"}, {L"InstanceName", L"NIC"}}});
    }

    inline static int delivered = 0;
};

TEST_F(StatusFactory, EndsTheEventsBeforeItDestroysTheItems)
{
    s_server = &server;
    CStatusFactory::addItem(new TellingItem);
    repaints = 0;
    CStatusFactory::destroyInstance();
    EXPECT_EQ(TellingItem::delivered, 1);
    EXPECT_TRUE(CStatusNetwork::getState());
    EXPECT_EQ(repaints, 0);
}

TEST_F(StatusFactory, PaintsFromTheRightByTheProtocol)
{
    for (const char* const name : {"a", "b", "c"})
        CStatusFactory::addItem(new NamedItem(name));
    Row row;
    int right = 160;
    std::vector<int> rights;
    for (const IStatusItem* const item : CStatusFactory::getItems()) {
        right -= item->drawIcon(CRect(0, 0, right, 60), row.Graphics());
        rights.push_back(right);
    }
    EXPECT_EQ(rights, (std::vector{80, 40, 20}));
}

TEST(StatusFactoryClass, IsNeverMade)
{
    static_assert(!std::is_default_constructible_v<CStatusFactory>);
    static_assert(!std::is_destructible_v<CStatusFactory>);
    SUCCEED();
}

// ---- The real items, in a process that ends with them

using WholeLife = StatusFactory;

TEST_F(WholeLife, DISABLED_OfTheRealItems)
{
    WriteIcon(L"burn.png", 24, 24, 0xFFFF0000);
    WriteIcon(L"cineiRecord.png", 24, 24, 0xFF00FF00);
    WriteIcon(L"connection.png", 24, 24, 0xFF0000FF);
    WriteIcon(L"connectionon.png", 24, 24, 0xFF0000FF);
    WriteIcon(L"pacemaker.png", 24, 24, 0xFFFFFF00);
    WriteIcon(L"streamingdisk.png", 24, 24, 0xFF00FFFF);
    for (const wchar_t* const name : {L"CDBurning", L"CineRecording", L"NetworkConnection"})
        Set(name, 1);
    CStatusBurning::setState(true); // before it is registered
    const std::vector<IStatusItem*> items = {
        CStatusNetwork::getInstance(),     CStatusWireless::getInstance(),
        CStatusBurning::getInstance(),     CStatusRecording::getInstance(),
        CStatusGps::getInstance(),         CStatusStreaming::getInstance(),
        CStatusFtpTransfer::getInstance(), CStatusProbeSensor::getInstance()};
    for (IStatusItem* const item : items) {
        CStatusFactory::addItem(item);
        item->updateVisibleState();
    }
    CStatusGps::setState(true);
    CStatusStreaming::setState(CStatusStreaming::StreamingToDisk);
    Row row;
    std::vector<int> rights;
    int right = 200;
    for (const IStatusItem* const item : CStatusFactory::getItems()) {
        right -= item->drawIcon(CRect(0, 0, right, 60), row.Graphics());
        rights.push_back(right);
    }
    // The warning of a probe without a reading takes what is left.
    EXPECT_EQ(rights, (std::vector{176, 176, 152, 152, 128, 104, 104, 0}));
    EXPECT_EQ(row.At(180, 30), 0xFF0000FFu);
    EXPECT_EQ(row.At(160, 30), 0xFFFF0000u);
    EXPECT_EQ(row.At(140, 30), 0xFFFFFF00u);
    EXPECT_EQ(row.At(120, 30), 0xFF00FFFFu);
    CStatusFactory::destroyInstance();
    const int before = repaints;
    Sleep(2200); // the blinking would have asked for two repaints
    EXPECT_EQ(repaints, before);
    EXPECT_EQ(CStatusBurning::getInstance(), items[2]) << "the pointers stay, stale";
    EXPECT_EQ(server.LiveObjects(), 0);
    std::exit(HasFailure() ? 1 : 42);
}

TEST(WholeLifeOfTheRealItems, EndsWithoutATrace)
{
    test_support::ChildTest child("WholeLife.DISABLED_OfTheRealItems");
    EXPECT_EQ(child.Wait(60'000), 42u);
}

} // namespace
