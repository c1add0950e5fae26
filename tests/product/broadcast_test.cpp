// The broadcast of action states: the consumers that are told, and what they may do meanwhile.
#include "Consumer.h"

#include <gtest/gtest.h>
#include <pro_actions/NotifiedConsumer.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <thread>

namespace {

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

} // namespace
