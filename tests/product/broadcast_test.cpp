// The broadcast of action states: the consumers that are told, and what they may do meanwhile.
#include <gtest/gtest.h>
#include <pro_actions/NotifiedConsumer.h>
#include <test_support/ActionState.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

using test_support::State;

namespace {

using Event = std::pair<ActionStateInfo, int>;

// Keeps the notifications, and then does what the test asks.
class Consumer : public pro_actions::NotifiedConsumer
{
public:
    using IActionStateConsumer::RegisterActionSignal;
    using NotifiedConsumer::RegisterActionNotification;
    using NotifiedConsumer::UnregisterActionNotification;
    using NotifiedConsumer::UnregisterActionSignal;
    using NotifiedConsumer::UnregisterAll;

    void ActionStateChanged(const ActionStateInfo& source, int value) override
    {
        events.emplace_back(source, value);
        const auto action = onChange; // a copy, because the consumer may be destroyed in it
        if (action) action(source, value);
    }

    void ActionNotification(ActionType type, int action, int param) override
    {
        notifications.push_back(State(type, action, param));
    }

    std::vector<Event> events;
    std::vector<ActionStateInfo> notifications;
    std::function<void(const ActionStateInfo&, int)> onChange;
};

const ActionStateInfo a = State(1, 1), b = State(1, 2);

TEST(BroadcastTest, ReachesExactlyTheConsumersOfTheState)
{
    Consumer one, two;
    one.RegisterActionSignal(a);
    two.RegisterActionSignal(a);
    two.RegisterActionSignal(b);
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 5));
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(b, 0));
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(State(1, 1, 1), 7));
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
    EXPECT_TRUE(pro_actions::SignalActionNotification(static_cast<ActionType>(4), 5, 6));
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(ActionStateInfo(), 2));
    EXPECT_TRUE(one.notifications.empty());
    EXPECT_EQ(one.events.size(), 1u);
    EXPECT_EQ(two.notifications, std::vector<ActionStateInfo>{State(4, 5, 6)});
    EXPECT_TRUE(two.events.empty());
    two.UnregisterActionNotification();
    pro_actions::SignalActionNotification(static_cast<ActionType>(4), 5, 6);
    EXPECT_EQ(two.notifications.size(), 1u);
}

TEST(BroadcastTest, ADestroyedConsumerIsNotTold)
{
    auto one = std::make_unique<Consumer>();
    one->RegisterActionSignal(a);
    one->RegisterActionNotification();
    one.reset();
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(a, 1));
    EXPECT_TRUE(pro_actions::SignalActionNotification(actionTypeNone, 0, 0));
}

TEST(BroadcastTest, AConsumerMayDestroyItselfAndOthersWhileItIsTold)
{
    auto one = std::make_unique<Consumer>(), two = std::make_unique<Consumer>(),
         three = std::make_unique<Consumer>();
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
            if (source != i) consumer.RegisterActionSignal(State(2, source));
        consumer.onChange = [i](const ActionStateInfo&, int value) {
            IActionStateConsumer::ActionStateSignal(State(2, i), value);
        };
    }
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(State(2, 0), 1));
    std::size_t told = 0;
    for (const auto& consumer : consumers)
        told += consumer->events.size();
    EXPECT_LE(told, 7u * 10000u);
    for (const auto& consumer : consumers)
        consumer->onChange = nullptr;
    EXPECT_TRUE(IActionStateConsumer::ActionStateSignal(State(2, 0), 1));
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
                // The states are its own, because a consumer must not end while another thread
                // notifies it.
                Consumer consumer;
                consumer.RegisterActionSignal(State(3, t));
                IActionStateConsumer::ActionStateSignal(State(3, t), i);
                seen += consumer.events.size();
            }
        });
    go = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(seen, 2000u);
}

// Compares the broadcast with a plain model of it.

// Random registrations, broadcasts and destructions, also from inside notifications. A plain list
// holds who is registered for what since when.
class BroadcastModel
{
public:
    explicit BroadcastModel(unsigned seed) : m_random(seed) {}

    void Step(int depth)
    {
        switch (Pick(7)) {
        case 0: Create(); break;
        case 1: Destroy(); break;
        case 2:
        case 3: Enlist(); break;
        case 4: Delist(); break;
        default: Broadcast(depth);
        }
    }

    int Delivered() const { return m_delivered; }

private:
    struct Entry
    {
        int id;
        int topic;
        int since;
    };

    int Pick(std::size_t count) { return static_cast<int>(m_random() % count); }

    int PickConsumer()
    {
        if (m_consumers.empty()) Create();
        return std::next(m_consumers.begin(), Pick(m_consumers.size()))->first;
    }

    void Create()
    {
        if (m_consumers.size() >= 12) return;
        const int id = m_nextId++;
        auto consumer = std::make_unique<Consumer>();
        consumer->onChange = [this, id](const ActionStateInfo& source, int value) {
            Told(id, source.action, value);
        };
        m_consumers.emplace(id, std::move(consumer));
    }

    void Destroy()
    {
        if (m_consumers.empty()) return;
        const int id = PickConsumer();
        std::erase_if(m_entries, [id](const Entry& entry) { return entry.id == id; });
        m_consumers.erase(id);
    }

    void Enlist()
    {
        const int id = PickConsumer(), topic = Pick(4);
        m_consumers[id]->RegisterActionSignal(State(6, topic));
        const auto same = [&](const Entry& entry) {
            return entry.id == id && entry.topic == topic;
        };
        if (std::none_of(m_entries.begin(), m_entries.end(), same))
            m_entries.push_back({id, topic, m_clock++});
    }

    void Delist()
    {
        const int id = PickConsumer(), topic = Pick(4);
        m_consumers[id]->UnregisterActionSignal(State(6, topic));
        std::erase_if(m_entries,
                      [&](const Entry& entry) { return entry.id == id && entry.topic == topic; });
    }

    // The entry that must be told next, or null.
    const Entry* Expected(int topic, int after, int before) const
    {
        for (const Entry& entry : m_entries)
            if (entry.topic == topic && entry.since > after && entry.since < before) return &entry;
        return nullptr;
    }

    void Broadcast(int depth)
    {
        if (depth >= 4) return;
        const int topic = Pick(4);
        m_running.push_back({topic, -1, m_clock, depth});
        IActionStateConsumer::ActionStateSignal(State(6, topic), depth);
        const Running ended = m_running.back();
        m_running.pop_back();
        EXPECT_EQ(Expected(topic, ended.after, ended.before), nullptr) << "somebody was not told";
    }

    void Told(int id, int topic, int value)
    {
        ++m_delivered;
        Running& running = m_running.back();
        const Entry* entry = Expected(running.topic, running.after, running.before);
        ASSERT_NE(entry, nullptr) << "told though nobody was left";
        EXPECT_EQ(entry->id, id);
        EXPECT_EQ(topic, running.topic);
        EXPECT_EQ(value, running.depth);
        running.after = entry->since;
        const int depth = running.depth;
        for (int i = Pick(3); i > 0; --i)
            Step(depth + 1);
    }

    struct Running
    {
        int topic;
        int after;  // time of registration of the last one told
        int before; // time when the broadcast began
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
            model.Step(0);
        delivered += model.Delivered();
    }
    EXPECT_GT(delivered, 10000);
}

} // namespace
