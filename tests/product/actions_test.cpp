// The action vocabulary, action states and their broadcast.
#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/IActionStateConsumer.h>
#include <zel_xml/zelXMLFile.h>

#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using test_support::TemporaryFolder;
using test_support::writeFile;

ActionStateInfo state(int type, int action, int param = 0)
{
    return {static_cast<ActionType>(type), action, param};
}

// ---- vocabulary

class VocabularyTest : public testing::Test
{
protected:
    ~VocabularyTest() override { CProActionCollection::Clear(); }

    bool load(const std::string& text)
    {
        const std::wstring path = m_folder / L"actions.xml";
        writeFile(path, text);
        return CProActionCollection::LoadVocabulary(path);
    }

    zelXMLNode element(const std::string& text)
    {
        const std::wstring path = m_folder / L"element.xml";
        writeFile(path, text);
        m_file.open(path, true);
        return m_file.getRootElement();
    }

    static constexpr const char* sample =
        "<actions><type name='Imaging' value='1'><a name='Freeze' code='0'/><a name='Depth' code='7'/></type>"
        "<type name='Report' value='-5'><a name='Freeze' code='3'/></type><type name='Empty' value='0'/></actions>";

    TemporaryFolder m_folder;
    zelXMLFile m_file;
};

TEST_F(VocabularyTest, IsEmptyBeforeAFileWasLoaded)
{
    EXPECT_EQ(CProActionCollection::MapActionType(L"Imaging"), ActionTypeNone);
    EXPECT_EQ(CProActionCollection::MapAction(ActionTypeNone, L"Freeze"), -1);
    EXPECT_EQ(CProActionCollection::GetActionTypeName(ActionTypeNone), L"");
}

TEST_F(VocabularyTest, MapsNamesToNumbersAndBack)
{
    ASSERT_TRUE(load(sample));
    const ActionType imaging = CProActionCollection::MapActionType(L"Imaging");
    const ActionType report = CProActionCollection::MapActionType(std::wstring(L"Report"));
    EXPECT_EQ(imaging, 1);
    EXPECT_EQ(report, -5);
    EXPECT_EQ(CProActionCollection::MapAction(imaging, L"Freeze"), 0);
    EXPECT_EQ(CProActionCollection::MapAction(imaging, L"Depth"), 7);
    EXPECT_EQ(CProActionCollection::MapAction(report, std::wstring(L"Freeze")), 3);
    EXPECT_EQ(CProActionCollection::GetActionTypeName(report), L"Report");
    EXPECT_EQ(CProActionCollection::GetActionName(imaging, 7), L"Depth");
}

TEST_F(VocabularyTest, AnswersMinusOneForWhatItDoesNotKnow)
{
    ASSERT_TRUE(load(sample));
    for (const wchar_t* name : {L"", L"imaging", L"Imaging ", L"Other"})
        EXPECT_EQ(CProActionCollection::MapActionType(name), ActionTypeNone);
    EXPECT_EQ(CProActionCollection::MapActionType(static_cast<const wchar_t*>(nullptr)), ActionTypeNone);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(1), static_cast<const wchar_t*>(nullptr)), -1);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(1), L"freeze"), -1);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(0), L"Freeze"), -1);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(99), L"Freeze"), -1);
    EXPECT_EQ(CProActionCollection::MapAction(ActionTypeNone, L"Freeze"), -1);
    EXPECT_EQ(CProActionCollection::GetActionName(static_cast<ActionType>(99), 0), L"");
}

TEST_F(VocabularyTest, AnUnusableFileLeavesTheVocabularyInUse)
{
    ASSERT_TRUE(load(sample));
    for (const char* text :
         {"<actions><type name='A' value='1'/><type name='A' value='2'/></actions>",
          "<actions><type name='A' value='1'/><type name='B' value='1'/></actions>",
          "<actions><type name='' value='1'/></actions>", "<actions><type value='1'/></actions>",
          "<actions><type name='A'/></actions>", "<actions><type name='A' value='-1'/></actions>",
          "<actions><type name='A' value='x'/></actions>", "<actions><type name='A' value='99999999999'/></actions>",
          "<actions><type name='A' value='1'><a name='x'/></type></actions>",
          "<actions><type name='A' value='1'><a name='x' code='1'/><a name='x' code='2'/></type></actions>",
          "<actions><type name='A' value='1'><a name='x' code='1'/><a name='y' code='1'/></type></actions>",
          "<actions>", ""})
        EXPECT_FALSE(load(text)) << text;
    EXPECT_FALSE(CProActionCollection::LoadVocabulary(m_folder / L"missing.xml"));
    EXPECT_FALSE(CProActionCollection::LoadVocabulary(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(CProActionCollection::MapActionType(L"Imaging"), 1);
}

TEST_F(VocabularyTest, AnotherFileReplacesTheWholeVocabulary)
{
    ASSERT_TRUE(load(sample));
    ASSERT_TRUE(load("<actions><type name='Other' value='4'/></actions>"));
    EXPECT_EQ(CProActionCollection::MapActionType(L"Imaging"), ActionTypeNone);
    EXPECT_EQ(CProActionCollection::MapActionType(L"Other"), 4);
    ASSERT_TRUE(load("<actions/>"));
    EXPECT_EQ(CProActionCollection::MapActionType(L"Other"), ActionTypeNone);
}

TEST_F(VocabularyTest, CanBeReplacedWhileOtherThreadsRead)
{
    ASSERT_TRUE(load(sample));
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i)
        readers.emplace_back([&] {
            while (!stop)
                if (const int type = CProActionCollection::MapActionType(L"Imaging"); type != 1 && type != -1) ++wrong;
        });
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(CProActionCollection::LoadVocabulary(m_folder / L"actions.xml"));
        if (i % 3 == 0) CProActionCollection::Clear();
    }
    stop = true;
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong, 0);
}

// ---- action states

TEST_F(VocabularyTest, AStateIsLoadedFromAnElement)
{
    ASSERT_TRUE(load(sample));
    ActionStateInfo info;
    ASSERT_TRUE(info.Load(element("<s actionType='Imaging' action='Depth' actionParam='-3'/>")));
    EXPECT_EQ(info, state(1, 7, -3));
    ASSERT_TRUE(info.Load(element("<s actionType='Imaging' action='Freeze'/>")));
    EXPECT_EQ(info, state(1, 0, 0));
    info.Reset();
    EXPECT_EQ(info, ActionStateInfo());
    EXPECT_EQ(info, state(-1, -1, 0));
}

TEST_F(VocabularyTest, AnElementThatNamesNoStateChangesNothing)
{
    ASSERT_TRUE(load(sample));
    ActionStateInfo info = state(8, 8, 8);
    EXPECT_FALSE(info.Load(zelXMLNode()));
    for (const char* text :
         {"<s/>", "<s actionType='Imaging'/>", "<s action='Depth'/>", "<s actionType='Other' action='Depth'/>",
          "<s actionType='Imaging' action='depth'/>", "<s actionType='Empty' action='Freeze'/>"})
        EXPECT_FALSE(info.Load(element(text))) << text;
    EXPECT_EQ(info, state(8, 8, 8));
}

TEST(ActionStateInfoTest, OrdersByTypeActionAndParameter)
{
    const std::vector<ActionStateInfo> ascending{state(-1, 5, 5), state(0, -1, 9), state(0, 3, -2), state(0, 3, 0),
                                                 state(1, -1, 0)};
    for (std::size_t i = 0; i < ascending.size(); ++i)
        for (std::size_t j = 0; j < ascending.size(); ++j)
            EXPECT_EQ(ascending[i] < ascending[j], i < j);
}

// ---- broadcast

using Event = std::pair<ActionStateInfo, int>;

class Consumer : public IActionStateConsumer
{
public:
    using IActionStateConsumer::RegisterActionNotification;
    using IActionStateConsumer::RegisterActionSignal;
    using IActionStateConsumer::UnregisterActionNotification;
    using IActionStateConsumer::UnregisterActionSignal;
    using IActionStateConsumer::UnregisterAll;

    void ActionStateChanged(const ActionStateInfo& source, int value) override
    {
        events.emplace_back(source, value);
        const auto action = onChange; // a copy: the consumer may be destroyed in it
        if (action) action(source, value);
    }

    void ActionNotification(ActionType type, int action, int param) override
    {
        notifications.push_back(state(type, action, param));
    }

    std::vector<Event> events;
    std::vector<ActionStateInfo> notifications;
    std::function<void(const ActionStateInfo&, int)> onChange;
};

const ActionStateInfo a = state(1, 1), b = state(1, 2);

TEST(BroadcastTest, ReachesExactlyTheConsumersOfTheState)
{
    Consumer one, two;
    EXPECT_TRUE(one.RegisterActionSignal(a));
    EXPECT_TRUE(two.RegisterActionSignal(a));
    EXPECT_TRUE(two.RegisterActionSignal(b));
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 5));
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(b, 0));
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(state(1, 1, 1), 7));
    EXPECT_EQ(one.events, (std::vector<Event>{{a, 5}}));
    EXPECT_EQ(two.events, (std::vector<Event>{{a, 5}, {b, 0}}));
}

TEST(BroadcastTest, RegisteringTwiceTellsOnce)
{
    Consumer one;
    one.RegisterActionSignal(a);
    one.RegisterActionSignal(a);
    IActionStateConsumer::ActionStateSignal(a, 1);
    EXPECT_EQ(one.events.size(), 1u);
    one.UnregisterActionSignal(a);
    one.UnregisterActionSignal(a);
    one.UnregisterActionSignal(b);
    IActionStateConsumer::ActionStateSignal(a, 1);
    EXPECT_EQ(one.events.size(), 1u);
}

TEST(BroadcastTest, NotificationsHaveConsumersOfTheirOwn)
{
    Consumer one, two;
    one.RegisterActionSignal(ActionStateInfo());
    two.RegisterActionNotification();
    EXPECT_TRUE(IActionStateConsumer::ActionNotificationSignal(static_cast<ActionType>(4), 5, 6));
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(ActionStateInfo(), 2));
    EXPECT_TRUE(one.notifications.empty());
    EXPECT_EQ(one.events.size(), 1u);
    EXPECT_EQ(two.notifications, std::vector<ActionStateInfo>{state(4, 5, 6)});
    EXPECT_TRUE(two.events.empty());
    two.UnregisterActionNotification();
    IActionStateConsumer::ActionNotificationSignal(static_cast<ActionType>(4), 5, 6);
    EXPECT_EQ(two.notifications.size(), 1u);
}

TEST(BroadcastTest, ADestroyedConsumerIsNotTold)
{
    auto one = std::make_unique<Consumer>();
    one->RegisterActionSignal(a);
    one->RegisterActionNotification();
    one.reset();
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 1));
    EXPECT_TRUE(IActionStateConsumer::ActionNotificationSignal(ActionTypeNone, 0, 0));
}

TEST(BroadcastTest, AConsumerMayDestroyItselfAndOthersWhileItIsTold)
{
    auto one = std::make_unique<Consumer>(), two = std::make_unique<Consumer>(), three = std::make_unique<Consumer>();
    for (auto* each : {one.get(), two.get(), three.get()})
        each->RegisterActionSignal(a);
    two->onChange = [&](const ActionStateInfo&, int) {
        one.reset();
        two.reset();
    };
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 1));
    EXPECT_EQ(three->events.size(), 1u);
    EXPECT_EQ(one, nullptr);
    EXPECT_EQ(two, nullptr);
}

TEST(BroadcastTest, OneThatRegistersMeanwhileIsToldFromTheNextBroadcastOn)
{
    Consumer one, two;
    one.RegisterActionSignal(a);
    one.onChange = [&](const ActionStateInfo&, int) { two.RegisterActionSignal(a); };
    IActionStateConsumer::ActionStateSignal(a, 1);
    EXPECT_TRUE(two.events.empty());
    IActionStateConsumer::ActionStateSignal(a, 2);
    EXPECT_EQ(two.events, (std::vector<Event>{{a, 2}}));
}

TEST(BroadcastTest, AConsumerAtTheAddressOfADestroyedOneIsNotTakenForIt)
{
    Consumer first;
    alignas(Consumer) unsigned char place[sizeof(Consumer)];
    Consumer* second = new (place) Consumer;
    first.RegisterActionSignal(a);
    second->RegisterActionSignal(a);
    first.onChange = [&](const ActionStateInfo&, int value) {
        if (value != 1) return;
        second->~Consumer();
        second = new (place) Consumer;
        second->RegisterActionSignal(a);
    };
    IActionStateConsumer::ActionStateSignal(a, 1);
    EXPECT_TRUE(second->events.empty());
    IActionStateConsumer::ActionStateSignal(a, 2);
    EXPECT_EQ(second->events, (std::vector<Event>{{a, 2}}));
    second->~Consumer();
}

TEST(BroadcastTest, ANestedBroadcastIsDeliveredInsideTheNotification)
{
    Consumer source, follower;
    source.RegisterActionSignal(a);
    follower.RegisterActionSignal(b);
    std::size_t eventsInside = 0;
    source.onChange = [&](const ActionStateInfo&, int value) {
        EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(b, value + 1));
        eventsInside = follower.events.size();
    };
    IActionStateConsumer::ActionStateSignal(a, 1);
    EXPECT_EQ(eventsInside, 1u);
    EXPECT_EQ(follower.events, (std::vector<Event>{{b, 2}}));
}

TEST(BroadcastTest, StatesThatFollowFromEachOtherEndInsteadOfOverflowingTheStack)
{
    Consumer one, two;
    one.RegisterActionSignal(a);
    two.RegisterActionSignal(b);
    int dropped = 0;
    one.onChange = [&](const ActionStateInfo&, int value) {
        dropped += !IActionStateConsumer::ActionStateSignal(b, value);
    };
    two.onChange = [&](const ActionStateInfo&, int value) {
        dropped += !IActionStateConsumer::ActionStateSignal(a, value);
    };
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 1));
    EXPECT_EQ(one.events.size() + two.events.size(), 64u);
    EXPECT_EQ(dropped, 1);
    one.onChange = two.onChange = nullptr;
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 1));
}

TEST(BroadcastTest, StatesThatAllFollowFromEachOtherEndInReasonableTime)
{
    std::vector<std::unique_ptr<Consumer>> consumers;
    for (int i = 0; i < 8; ++i) {
        Consumer& consumer = *consumers.emplace_back(std::make_unique<Consumer>());
        for (int source = 0; source < 8; ++source)
            if (source != i) consumer.RegisterActionSignal(state(2, source));
        consumer.onChange = [i](const ActionStateInfo&, int value) {
            IActionStateConsumer::ActionStateSignal(state(2, i), value);
        };
    }
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(state(2, 0), 1));
    std::size_t told = 0;
    for (const auto& consumer : consumers)
        told += consumer->events.size();
    EXPECT_LE(told, 7u * 10000u);
    for (const auto& consumer : consumers)
        consumer->onChange = nullptr;
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(state(2, 0), 1));
}

TEST(BroadcastTest, AThrowingConsumerDoesNotKeepTheOthersFromBeingTold)
{
    Consumer one, two;
    one.RegisterActionSignal(a);
    two.RegisterActionSignal(a);
    one.onChange = [](const ActionStateInfo&, int) { throw std::runtime_error("one"); };
    EXPECT_THROW(IActionStateConsumer::ActionStateSignal(a, 1), std::runtime_error);
    EXPECT_EQ(two.events.size(), 1u);
    one.onChange = nullptr;
    for (int i = 0; i < 200; ++i)
        EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 1));
}

TEST(BroadcastTest, ThreadsMayRegisterAndBroadcastAtOnce)
{
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    std::atomic<std::size_t> seen{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            while (!go)
                std::this_thread::yield();
            for (int i = 0; i < 500; ++i) {
                // States of its own: a consumer must not go while another thread is telling it.
                Consumer consumer;
                consumer.RegisterActionSignal(state(3, t));
                IActionStateConsumer::ActionStateSignal(state(3, t), i);
                seen += consumer.events.size();
            }
        });
    go = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(seen, 2000u);
}

// Random registrations, broadcasts and destructions, from inside notifications too, against a plain list of who is
// registered for what since when.
class BroadcastModel
{
public:
    explicit BroadcastModel(unsigned seed) : m_random(seed) {}

    void step(int depth)
    {
        switch (pick(7)) {
        case 0:
            create();
            break;
        case 1:
            destroy();
            break;
        case 2:
        case 3:
            enlist();
            break;
        case 4:
            delist();
            break;
        default:
            broadcast(depth);
        }
    }

    int delivered() const { return m_delivered; }

private:
    struct Entry
    {
        int id;
        int topic;
        int since;
    };

    int pick(std::size_t count) { return static_cast<int>(m_random() % count); }

    int pickConsumer()
    {
        if (m_consumers.empty()) create();
        return std::next(m_consumers.begin(), pick(m_consumers.size()))->first;
    }

    void create()
    {
        if (m_consumers.size() >= 12) return;
        const int id = m_nextId++;
        auto consumer = std::make_unique<Consumer>();
        consumer->onChange = [this, id](const ActionStateInfo& source, int value) { told(id, source.action, value); };
        m_consumers.emplace(id, std::move(consumer));
    }

    void destroy()
    {
        if (m_consumers.empty()) return;
        const int id = pickConsumer();
        std::erase_if(m_entries, [id](const Entry& entry) { return entry.id == id; });
        m_consumers.erase(id);
    }

    void enlist()
    {
        const int id = pickConsumer(), topic = pick(4);
        m_consumers[id]->RegisterActionSignal(state(6, topic));
        const auto same = [&](const Entry& entry) { return entry.id == id && entry.topic == topic; };
        if (std::none_of(m_entries.begin(), m_entries.end(), same)) m_entries.push_back({id, topic, m_clock++});
    }

    void delist()
    {
        const int id = pickConsumer(), topic = pick(4);
        m_consumers[id]->UnregisterActionSignal(state(6, topic));
        std::erase_if(m_entries, [&](const Entry& entry) { return entry.id == id && entry.topic == topic; });
    }

    // The entry that has to be told next, or null.
    const Entry* expected(int topic, int after, int before) const
    {
        for (const Entry& entry : m_entries)
            if (entry.topic == topic && entry.since > after && entry.since < before) return &entry;
        return nullptr;
    }

    void broadcast(int depth)
    {
        if (depth >= 4) return;
        const int topic = pick(4);
        m_running.push_back({topic, -1, m_clock, depth});
        IActionStateConsumer::ActionStateSignal(state(6, topic), depth);
        const Running ended = m_running.back();
        m_running.pop_back();
        EXPECT_EQ(expected(topic, ended.after, ended.before), nullptr) << "somebody was not told";
    }

    void told(int id, int topic, int value)
    {
        ++m_delivered;
        Running& running = m_running.back();
        const Entry* entry = expected(running.topic, running.after, running.before);
        ASSERT_NE(entry, nullptr) << "told though nobody was left";
        EXPECT_EQ(entry->id, id);
        EXPECT_EQ(topic, running.topic);
        EXPECT_EQ(value, running.depth);
        running.after = entry->since;
        const int depth = running.depth;
        for (int i = pick(3); i > 0; --i)
            step(depth + 1);
    }

    struct Running
    {
        int topic;
        int after;  // told up to here
        int before; // registered when the broadcast began
        int depth;
    };

    std::mt19937 m_random;
    std::map<int, std::unique_ptr<Consumer>> m_consumers;
    std::vector<Entry> m_entries;
    std::vector<Running> m_running;
    int m_nextId = 0;
    int m_clock = 0;
    int m_delivered = 0;
};

TEST(BroadcastTest, AgreesWithAPlainModelOverRandomSteps)
{
    int delivered = 0;
    for (unsigned seed = 0; seed < 20; ++seed) {
        BroadcastModel model(seed);
        for (int i = 0; i < 2000 && !testing::Test::HasFailure(); ++i)
            model.step(0);
        delivered += model.delivered();
    }
    EXPECT_GT(delivered, 10000);
}

} // namespace
