// The state-change signal: who is called, in which order, and what suppresses a call.
#include <gtest/gtest.h>
#include <test_support/ChildTest.h>
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <functional>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr StateChangeType someType{7};

// Writes its name into a shared trace at each call, and then does what the test asks.
class Consumer : public IStateChangeConsumer
{
public:
    explicit Consumer(char name, std::string& trace, std::function<void()> action = {})
        : m_name(name), m_trace(&trace), m_action(std::move(action))
    {
    }

    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override
    {
        *m_trace += m_name;
        lastType = type;
        lastParam1 = param1;
        lastParam2 = param2;
        if (const auto action = m_action)
            action(); // a copy, because the action may destroy this object
    }

    // Only derived consumers reach this signal.
    static Signal& TheSignal() { return m_onStateChangeSignal; }

    StateChangeType lastType{};
    unsigned int lastParam1 = 0;
    long lastParam2 = 0;

private:
    char m_name;
    std::string* m_trace;
    std::function<void()> m_action;
};

void Emit()
{
    IStateChangeConsumer::StateChangeSignal(someType, 1, 2);
}

class StateSignal : public testing::Test
{
protected:
    std::string EmitAndTrace()
    {
        trace.clear();
        Emit();
        return trace;
    }

    std::string trace;
};

TEST_F(StateSignal, EmissionWithoutConsumersHasNoEffect)
{
    Emit();
    EXPECT_EQ(Consumer::TheSignal().GetPeerCount(), 0u);
    EXPECT_FALSE(Consumer::TheSignal().IsBusy());
}

TEST_F(StateSignal, ConsumersAreCalledInOrderOfConstruction)
{
    Consumer a('a', trace), b('b', trace), c('c', trace);
    EXPECT_EQ(EmitAndTrace(), "abc");
}

TEST_F(StateSignal, ValuesArriveUnchanged)
{
    Consumer a('a', trace);
    IStateChangeConsumer::StateChangeSignal(StateChangeType{-5}, 0xFFFFFFFFu, -2147483647L - 1);
    EXPECT_EQ(a.lastType, StateChangeType{-5});
    EXPECT_EQ(a.lastParam1, 0xFFFFFFFFu);
    EXPECT_EQ(a.lastParam2, -2147483647L - 1);
}

TEST_F(StateSignal, TheEnvironmentEmitsTheSameSignal)
{
    Consumer a('a', trace);
    utilsExam::StateChangeSignal(someType, 3, 4);
    EXPECT_EQ(trace, "a");
    EXPECT_EQ(a.lastParam2, 4);
}

TEST_F(StateSignal, DestroyedConsumerIsNotCalledAnyMore)
{
    Consumer a('a', trace);
    std::optional<Consumer> b(std::in_place, 'b', trace);
    Consumer c('c', trace);
    b.reset();
    EXPECT_EQ(EmitAndTrace(), "ac");
}

TEST_F(StateSignal, NestedEmissionIsDroppedAndTheOuterGoesOn)
{
    Consumer a('a', trace, Emit), b('b', trace, Emit);
    EXPECT_EQ(EmitAndTrace(), "ab");
    EXPECT_EQ(EmitAndTrace(), "ab") << "nothing was queued";
}

TEST_F(StateSignal, CopyIsNotCalledAndLeavesItsSourceSubscribed)
{
    Consumer a('a', trace);
    {
        const Consumer copy(a);
        EXPECT_EQ(EmitAndTrace(), "a");
    }
    EXPECT_EQ(EmitAndTrace(), "a");
}

TEST_F(StateSignal, CopyOutlivesItsSource)
{
    std::optional<Consumer> a(std::in_place, 'a', trace);
    const Consumer copy(*a);
    a.reset();
    EXPECT_EQ(EmitAndTrace(), "");
}

TEST_F(StateSignal, AssignmentSubscribesNobody)
{
    Consumer a('a', trace);
    Consumer copy(a);
    copy = a;
    EXPECT_EQ(EmitAndTrace(), "a");
}

TEST_F(StateSignal, SubscribedConsumerStaysSubscribedWhenAssignedTo)
{
    Consumer a('a', trace), b('b', trace);
    a = b;
    EXPECT_EQ(EmitAndTrace(), "bb") << "each is called for itself; the name was assigned too";
}

TEST_F(StateSignal, AssignmentToItselfChangesNothing)
{
    Consumer a('a', trace);
    Consumer& same = a;
    a = same;
    EXPECT_EQ(EmitAndTrace(), "a");
    EXPECT_EQ(Consumer::TheSignal().GetPeerCount(), 1u);
}

TEST_F(StateSignal, DestroyingTheCalledConsumerSkipsTheNextInThatEmissionOnly)
{
    std::optional<Consumer> b;
    Consumer a('a', trace);
    b.emplace('b', trace, [&] { b.reset(); });
    Consumer c('c', trace), d('d', trace);
    EXPECT_EQ(EmitAndTrace(), "abd");
    EXPECT_EQ(EmitAndTrace(), "acd");
}

TEST_F(StateSignal, DestroyingAnEarlierConsumerSkipsTheNext)
{
    std::optional<Consumer> a(std::in_place, 'a', trace);
    Consumer b('b', trace, [&] { a.reset(); }), c('c', trace), d('d', trace);
    EXPECT_EQ(EmitAndTrace(), "abd");
    EXPECT_EQ(EmitAndTrace(), "bcd");
}

TEST_F(StateSignal, DestroyingALaterConsumerSkipsNobodyElse)
{
    std::optional<Consumer> c;
    Consumer a('a', trace, [&] { c.reset(); }), b('b', trace);
    c.emplace('c', trace);
    Consumer d('d', trace);
    EXPECT_EQ(EmitAndTrace(), "abd");
}

TEST_F(StateSignal, ConsumerConstructedDuringAnEmissionIsCalledInIt)
{
    std::optional<Consumer> late;
    Consumer a('a', trace, [&] { late.emplace('z', trace); }), b('b', trace);
    EXPECT_EQ(EmitAndTrace(), "abz");
}

TEST_F(StateSignal, ConsumerThatReplacesItselfIsCalledAgainAtTheEnd)
{
    std::optional<Consumer> a;
    int lives = 2;
    const std::function<void()> replace = [&] {
        a.reset();
        if (--lives > 0) a.emplace('A', trace, replace);
    };
    a.emplace('a', trace, replace);
    Consumer b('b', trace), c('c', trace);
    EXPECT_EQ(EmitAndTrace(), "acA") << "b moved into the place that had been reached";
    EXPECT_EQ(EmitAndTrace(), "bc");
}

TEST_F(StateSignal, SameAddressSubscribesOnce)
{
    alignas(Consumer) unsigned char place[sizeof(Consumer)];
    for (int i = 0; i < 2; ++i) {
        Consumer* const a = new (place) Consumer('a', trace);
        EXPECT_EQ(Consumer::TheSignal().GetPeerCount(), 1u);
        EXPECT_EQ(EmitAndTrace(), "a");
        a->~Consumer();
    }
}

TEST_F(StateSignal, IntervalSuppressesASteadyStreamOfEarlyAttempts)
{
    Consumer a('a', trace);
    Consumer::TheSignal().SetMinimumInterval(3600 * 1000);
    EXPECT_EQ(EmitAndTrace(), "a") << "nothing was attempted in the last hour";
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(EmitAndTrace(), "");
    Consumer::TheSignal().SetMinimumInterval(0);
    EXPECT_EQ(EmitAndTrace(), "a");
}

TEST_F(StateSignal, SuppressedAttemptCountsAsTheLastOne)
{
    Consumer a('a', trace);
    constexpr DWORD interval = 400;
    Consumer::TheSignal().SetMinimumInterval(interval);
    const ULONGLONG start = GetTickCount64();
    Emit();
    // Attempts come much closer than the interval, for longer than it. Only a delay of the whole
    // machine lets one pass.
    ULONGLONG last = GetTickCount64(), longestGap = 0;
    trace.clear();
    while (last - start < 2 * interval) {
        Emit();
        const ULONGLONG now = GetTickCount64();
        longestGap = std::max(longestGap, now - last);
        last = now;
        Sleep(5);
    }
    Consumer::TheSignal().SetMinimumInterval(0);
    if (longestGap + 50 >= interval)
        GTEST_SKIP() << "the machine stopped this program for longer than the interval";
    EXPECT_EQ(trace, "");
}

TEST_F(StateSignal, AttemptAfterTheIntervalPasses)
{
    Consumer a('a', trace);
    Consumer::TheSignal().SetMinimumInterval(40);
    Emit();
    const ULONGLONG start = GetTickCount64();
    while (GetTickCount64() - start < 100)
        Sleep(5);
    EXPECT_EQ(EmitAndTrace(), "a");
    Consumer::TheSignal().SetMinimumInterval(0);
}

TEST_F(StateSignal, SignalIsNamedAndListsItsSlotsInOrder)
{
    EXPECT_STREQ(Consumer::TheSignal().GetName(), "NoName-Signal");
    Consumer a('a', trace);
    EXPECT_STREQ(Consumer::TheSignal().GetPeer(0).GetName(), "NoName-Slot");
}

// The process-wide signal ends silent, so the test has a process of its own.
TEST(StateSignalChild, DISABLED_HandlerThatThrows)
{
    std::string trace;
    Consumer a('a', trace), b('b', trace, [] { throw std::runtime_error("from a handler"); }),
        c('c', trace);
    EXPECT_THROW(Emit(), std::runtime_error);
    EXPECT_EQ(trace, "ab");
    EXPECT_TRUE(Consumer::TheSignal().IsBusy());
    EXPECT_TRUE(Consumer::TheSignal().GetPeer(1).IsBusy()) << "the slot stays busy too";
    EXPECT_FALSE(Consumer::TheSignal().GetPeer(0).IsBusy());
    Emit();
    EXPECT_EQ(trace, "ab") << "every later emission is dropped";
}

TEST_F(StateSignal, HandlerThatThrowsSilencesTheSignalForGood)
{
    test_support::ChildTest child("StateSignalChild.DISABLED_HandlerThatThrows");
    EXPECT_EQ(child.Wait(60000), 0u);
}

} // namespace
