// Signals and slots with other signatures than the state change's.
#include <gtest/gtest.h>
#include <test_support/VirtualPlace.h>
#include <Utils_Statics/IProAgent.h>
#include <Utils_Statics/IStateChangeConsumer.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace {

class Receiver
{
public:
    int None() { return 10; }
    int One(int a) { return a; }
    int Two(int a, int b) { return a + b; }
    int Three(int a, int b, int c) { return a + b + c; }
    int Four(int a, int b, int c, int d) { return a + b + c + d; }
    int Five(int a, int b, int c, int d, int e) { return a + b + c + d + e; }
};

using IntSignal = cSignal<int, int, int, int, int, int>;
using IntSlot = cSlot<Receiver, int, int, int, int, int, int>;
using IntBase = cSigSlotBase<int, int, int, int, int, int>;

bool Sum(int* running, int result)
{
    *running += result;
    return *running < 100;
}

TEST(SignalAndSlot, UnboundSlotIsNeverConnected)
{
    IntSignal signal;
    IntSlot slot;
    EXPECT_STREQ(slot.GetName(), "Uninitialized-Slot");
    signal.Connect(slot);
    EXPECT_EQ(signal.GetPeerCount(), 0u);
    Receiver receiver;
    slot.Bind(nullptr, &Receiver::None);
    EXPECT_FALSE(slot.IsValid());
    slot.Bind(&receiver, static_cast<int (Receiver::*)()>(nullptr));
    EXPECT_FALSE(slot.IsValid());
    EXPECT_STREQ(slot.GetName(), "Uninitialized-Slot");
    slot.Bind(&receiver, &Receiver::None);
    EXPECT_TRUE(slot.IsValid());
    EXPECT_STREQ(slot.GetName(), "NoName-Slot");
}

TEST(SignalAndSlot, EqualKindsAreNeverConnected)
{
    IntSignal signal, other;
    signal.Connect(other);
    signal.Connect(signal);
    EXPECT_EQ(signal.GetPeerCount(), 0u);
    EXPECT_EQ(other.GetPeerCount(), 0u);
}

TEST(SignalAndSlot, ConnectingTwiceListsEachOnce)
{
    IntSignal signal;
    Receiver receiver;
    IntSlot slot;
    slot.Bind(&receiver, &Receiver::None);
    signal.Connect(slot);
    signal.Connect(slot);
    EXPECT_EQ(signal.GetPeerCount(), 1u);
    EXPECT_EQ(slot.GetPeerCount(), 1u);
    EXPECT_EQ(&slot.GetPeer(0), &signal);
}

TEST(SignalAndSlot, CopyOfASlotKnowsTheSignalsThatDoNotKnowIt)
{
    IntSignal signal;
    Receiver receiver;
    IntSlot slot, assigned;
    slot.Bind(&receiver, &Receiver::None);
    signal.Connect(slot);
    const IntSlot copy(slot);
    assigned = slot;
    for (const IntSlot* each : std::vector<const IntSlot*>{&copy, &assigned}) {
        ASSERT_EQ(each->GetPeerCount(), 1u);
        EXPECT_EQ(&each->GetPeer(0), &signal);
    }
    EXPECT_EQ(signal.GetPeerCount(), 1u);
}

TEST(SignalAndSlot, SlotTakesOnlyTheNumberOfArgumentsOfItsMethod)
{
    Receiver receiver;
    IntSlot slot;
    const auto results = [&slot] {
        return std::vector<int>{slot.Call0(),           slot.Call1(1),
                                slot.Call2(1, 2),       slot.Call3(1, 2, 3),
                                slot.Call4(1, 2, 3, 4), slot.Call5(1, 2, 3, 4, 5)};
    };
    EXPECT_EQ(results(), (std::vector<int>{0, 0, 0, 0, 0, 0}));
    slot.Bind(&receiver, &Receiver::None);
    EXPECT_EQ(results(), (std::vector<int>{10, 0, 0, 0, 0, 0}));
    slot.Bind(&receiver, &Receiver::One);
    EXPECT_EQ(results(), (std::vector<int>{0, 1, 0, 0, 0, 0}));
    slot.Bind(&receiver, &Receiver::Two);
    EXPECT_EQ(results(), (std::vector<int>{0, 0, 3, 0, 0, 0}));
    slot.Bind<&Receiver::Three>(&receiver);
    EXPECT_EQ(results(), (std::vector<int>{0, 0, 0, 6, 0, 0}));
    slot.Bind(&receiver, &Receiver::Four);
    EXPECT_EQ(results(), (std::vector<int>{0, 0, 0, 0, 10, 0}));
    slot.Bind(&receiver, &Receiver::Five);
    EXPECT_EQ(results(), (std::vector<int>{0, 0, 0, 0, 0, 15}));
    EXPECT_FALSE(slot.IsBusy());
}

TEST(SignalAndSlot, SignalHandsOnAsManyArgumentsAsItIsGiven)
{
    Receiver receiver;
    IntSlot slots[6];
    slots[0].Bind(&receiver, &Receiver::None);
    slots[1].Bind(&receiver, &Receiver::One);
    slots[2].Bind(&receiver, &Receiver::Two);
    slots[3].Bind(&receiver, &Receiver::Three);
    slots[4].Bind(&receiver, &Receiver::Four);
    slots[5].Bind(&receiver, &Receiver::Five);
    IntSignal signal;
    EXPECT_TRUE(signal.IsValid());
    signal.SetCombiner(&Sum);
    for (IntSlot& slot : slots)
        signal.Connect(slot);
    EXPECT_EQ(signal.Call0(), 10);
    EXPECT_EQ(signal.Call1(1), 1);
    EXPECT_EQ(signal.Call2(1, 2), 3);
    EXPECT_EQ(signal.Call3(1, 2, 3), 6);
    EXPECT_EQ(signal.Call4(1, 2, 3, 4), 10);
    EXPECT_EQ(signal.Call5(1, 2, 3, 4, 5), 15);
}

TEST(SignalAndSlot, CombinerSumsAndEndsTheEmission)
{
    IntSignal signal;
    Receiver receiver;
    IntSlot slots[3];
    for (IntSlot& slot : slots) {
        slot.Bind(&receiver, &Receiver::Two);
        signal.Connect(slot);
    }
    EXPECT_EQ(signal.Call2(20, 20), 0) << "the default combiner leaves the result alone";
    signal.SetCombiner(&Sum);
    signal.SetInitialResult(1);
    EXPECT_EQ(signal.Call2(1, 2), 10);
    EXPECT_EQ(signal.Call2(30, 30), 121) << "the third was not called";
}

TEST(SignalAndSlot, IndexOutsideOfThePeersIsReported)
{
    IntSignal signal;
    try {
        signal.GetPeer(0);
        FAIL() << "no exception";
    } catch (const std::out_of_range& failure) {
        EXPECT_STREQ(failure.what(), "invalid vector<T> subscript");
    }
}

TEST(SignalAndSlot, DestroyedSignalLeavesTheSlotsListsEmpty)
{
    Receiver receiver;
    IntSlot slot;
    slot.Bind(&receiver, &Receiver::None);
    {
        IntSignal signal;
        signal.Connect(slot);
        EXPECT_EQ(slot.GetPeerCount(), 1u);
    }
    EXPECT_EQ(slot.GetPeerCount(), 0u);
}

TEST(SignalAndSlot, SlotHasItsOwnIntervalAndResult)
{
    Receiver receiver;
    IntSlot slot;
    slot.Bind(&receiver, &Receiver::None);
    slot.SetMinimumInterval(3600 * 1000, 55);
    EXPECT_EQ(slot.Call0(), 10);
    EXPECT_EQ(slot.Call0(), 55);
}

TEST(SignalAndSlot, ThrottledSignalGivesItsOwnResultAndCallsNobody)
{
    Receiver receiver;
    IntSlot slot;
    slot.Bind(&receiver, &Receiver::None);
    IntSignal signal;
    signal.SetCombiner(&Sum);
    signal.Connect(slot);
    signal.SetMinimumInterval(3600 * 1000, 66);
    EXPECT_EQ(signal.Call0(), 10);
    EXPECT_EQ(signal.Call0(), 66);
    signal.SetMinimumInterval(0);
    EXPECT_EQ(signal.Call0(), 10);
}

TEST(SignalAndSlot, SlotsOwnIntervalHoldsInsideAnEmission)
{
    Receiver receiver;
    IntSlot often, seldom;
    often.Bind(&receiver, &Receiver::None);
    seldom.Bind(&receiver, &Receiver::None);
    seldom.SetMinimumInterval(3600 * 1000, 5);
    IntSignal signal;
    signal.SetCombiner(&Sum);
    signal.Connect(often);
    signal.Connect(seldom);
    EXPECT_EQ(signal.Call0(), 20);
    EXPECT_EQ(signal.Call0(), 15); // the suppressed call's result is combined too
}

// Emits its signal again from inside a call.
struct Emitter
{
    using Slot = cSlot<Emitter, int, int, int, int, int, int>;
    Emitter()
    {
        slot.Bind(this, &Emitter::Run);
        signal.SetCombiner(&Sum);
        signal.SetResultWhenBusy(88);
        signal.Connect(slot);
    }
    int Run()
    {
        inner = signal.Call0();
        return 1;
    }
    IntSignal signal;
    Slot slot;
    int inner = 0;
};

TEST(SignalAndSlot, BusySignalGivesItsOwnResult)
{
    Emitter emitter;
    EXPECT_EQ(emitter.signal.Call0(), 1);
    EXPECT_EQ(emitter.inner, 88);
    EXPECT_FALSE(emitter.signal.IsBusy());
}

// Calls its own slot again from inside it.
class Reentrant
{
public:
    using Slot = cSlot<Reentrant, int, int, int, int, int, int>;
    Reentrant()
    {
        slot.Bind(this, &Reentrant::Run);
        slot.SetResultWhenBusy(77);
    }
    int Run() { return inner = slot.Call0(); }
    Slot slot;
    int inner = 0;
};

TEST(SignalAndSlot, SlotIsNotReentered)
{
    Reentrant object;
    EXPECT_EQ(object.slot.Call0(), 77);
    EXPECT_EQ(object.inner, 77);
    EXPECT_FALSE(object.slot.IsBusy());
}

TEST(SignalAndSlot, SlotCalledDirectlyMayBeDestroyedByItsMethod)
{
    struct Mortal
    {
        int Run()
        {
            slot.reset();
            return 5;
        }
        std::unique_ptr<cSlot<Mortal, int, int, int, int, int, int>> slot;
    } mortal;
    mortal.slot = std::make_unique<cSlot<Mortal, int, int, int, int, int, int>>();
    auto& slot = *mortal.slot;
    slot.Bind(&mortal, &Mortal::Run);
    EXPECT_EQ(slot.Call0(), 5);
    EXPECT_EQ(mortal.slot, nullptr);
}

TEST(SignalAndSlot, VirtualOperationsStandInTheAgreedOrder)
{
    EXPECT_EQ(test_support::VirtualPlace(&IntBase::IsValid), 0u);
    EXPECT_EQ(test_support::VirtualPlace(&IntBase::Call5), 1u);
    EXPECT_EQ(test_support::VirtualPlace(&IntBase::Call4), 2u);
    EXPECT_EQ(test_support::VirtualPlace(&IntBase::Call3), 3u);
    EXPECT_EQ(test_support::VirtualPlace(&IntBase::Call2), 4u);
    EXPECT_EQ(test_support::VirtualPlace(&IntBase::Call1), 5u);
    EXPECT_EQ(test_support::VirtualPlace(&IntBase::Call0), 6u);
}

// The agent that the whole process reaches.

class Agent : public IProAgent
{
public:
    Agent() { m_agent = this; }
    ~Agent() override = default;
    void Execute() override {}
};

TEST(ProAgent, IsReachableWhileItLives)
{
    EXPECT_EQ(IProAgent::GetAgent(), nullptr);
    {
        Agent agent;
        EXPECT_EQ(IProAgent::GetAgent(), &agent);
        agent.AddTail(L"task");
        EXPECT_EQ(agent.GetCount(), 1);
    }
    EXPECT_EQ(IProAgent::GetAgent(), nullptr);
}

} // namespace
