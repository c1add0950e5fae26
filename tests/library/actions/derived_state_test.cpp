// States that follow from others: the content of the file, and the broadcasts.
#include "DerivedStateFixture.h"
#include "RandomDocument.h"

#include <pro_actions/NotifiedConsumer.h>
#include <test_support/VirtualPlace.h>

#include <map>
#include <set>

namespace {

using test_support::WriteFile;

using Ints = std::vector<int>;

const ActionStateInfo a = State(9, 0), b = State(9, 1), c = State(9, 2), d = State(9, 3);

// The values that one state broadcasts.
class LampTest : public DerivedStateTest
{
protected:
    LampTest() { m_lamp.ListenTo(d); }

    // Loads D as derived of A and B.
    bool LoadLamp(const std::string& combine)
    {
        return Load("<states><s actionType='Lamp' action='D'" + combine +
                    "><x actionType='Lamp' action='A'/><x actionType='Lamp' action='B'/></s>"
                    "</states>");
    }

    // The broadcasts of D when a state has a new value.
    Ints ValuesAfter(const ActionStateInfo& source, int value)
    {
        IActionStateConsumer::ActionStateSignal(source, value);
        Ints values;
        for (const StateEvent& event : m_lamp.Take())
            values.push_back(event.second);
        return values;
    }

    Listener m_lamp;
};

TEST_F(LampTest, OrIsOnWhileAnySourceIs)
{
    ASSERT_TRUE(LoadLamp(" combine='Or'"));
    EXPECT_EQ(ValuesAfter(a, 0), Ints{0});
    EXPECT_EQ(ValuesAfter(b, 5), Ints{1});
    EXPECT_EQ(ValuesAfter(b, 0), Ints{0});
    EXPECT_EQ(ValuesAfter(a, -1), Ints{1});
    EXPECT_EQ(ValuesAfter(b, 1), Ints{1});
}

TEST_F(LampTest, AndIsOnWhileAllThatReportedAre)
{
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_EQ(ValuesAfter(a, 1), Ints{1}); // B has not been broadcast
    EXPECT_EQ(ValuesAfter(b, 0), Ints{0});
    EXPECT_EQ(ValuesAfter(b, 2), Ints{1});
    EXPECT_EQ(ValuesAfter(a, 0), Ints{0});
}

TEST_F(LampTest, OnlyTheExactWordMeansOr)
{
    for (const char* text : {" combine='or'", " combine='OR'", " combine='Or '", " combine=''",
                             " combine='And'", " Combine='Or'"}) {
        ASSERT_TRUE(LoadLamp(text));
        EXPECT_EQ(ValuesAfter(a, 0), Ints{0});
        EXPECT_EQ(ValuesAfter(b, 1), Ints{0}) << text;
    }
}

TEST_F(LampTest, ARepeatedValueIsBroadcastAgain)
{
    ASSERT_TRUE(LoadLamp(" combine='Or'"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(ValuesAfter(a, 1), Ints{1});
}

TEST_F(LampTest, OtherStatesAreNoSources)
{
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_EQ(ValuesAfter(c, 1), Ints{});
    EXPECT_EQ(ValuesAfter(State(9, 0, 1), 1), Ints{}); // A with another parameter
    pro_actions::SignalActionNotification(static_cast<ActionType>(9), 0, 0);
    EXPECT_EQ(m_lamp.Take(), std::vector<StateEvent>{});
}

TEST_F(LampTest, LoadingBroadcastsNothingAndForgetsWhatWasReported)
{
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_EQ(ValuesAfter(a, 0), Ints{0});
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_TRUE(m_lamp.Take().empty());
    EXPECT_EQ(ValuesAfter(b, 1), Ints{1});
}

TEST_F(LampTest, LoadingTwiceComputesNothingTwice)
{
    ASSERT_TRUE(LoadLamp(""));
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_EQ(ValuesAfter(a, 1), Ints{1});
}

TEST_F(LampTest, DestroyedStatesComputeNothing)
{
    ASSERT_TRUE(LoadLamp(""));
    DerivedState::DestroyAll();
    EXPECT_EQ(ValuesAfter(a, 1), Ints{});
    DerivedState::DestroyAll();
}

TEST_F(LampTest, AMissingOrUnreadableFileLeavesNoStateAndNoLogLine)
{
    EXPECT_FALSE(DerivedState::LoadAll());
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_FALSE(Load("<states>"));
    EXPECT_EQ(ValuesAfter(a, 1), Ints{});
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_FALSE(Load("<states>a & b</states>"));
    EXPECT_EQ(ValuesAfter(a, 1), Ints{});
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(LampTest, TheFileOfTheBaseProtocolStoreCountsAlone)
{
    for (const wchar_t* const folder : {L"factory\\P1", L"base", L"second", L"saved"})
        WriteFile(m_protocol / folder + L"\\button_states.xml",
                  "<s><s actionType='Lamp' action='D'><x actionType='Lamp' action='C'/></s></s>");
    EXPECT_FALSE(DerivedState::LoadAll());
    ASSERT_TRUE(LoadLamp(""));
    EXPECT_EQ(ValuesAfter(c, 1), Ints{});
    EXPECT_EQ(ValuesAfter(a, 1), Ints{1});
}

TEST_F(LampTest, ElementsWithoutAStateAndSourcesWithoutOneAreLeftOut)
{
    ASSERT_TRUE(Load("<any><s action='D'><x actionType='Lamp' action='A'/></s><!-- c -->text"
                     "<any actionType='Lamp' action='D' combine='Or'><x/><x actionType='Lamp' "
                     "action='no'/><any actionType='Lamp' action='B'/></any></any>"));
    Listener nothing;
    nothing.ListenTo(ActionStateInfo());
    EXPECT_EQ(ValuesAfter(a, 1), Ints{});
    EXPECT_EQ(ValuesAfter(b, 1), Ints{1});
    EXPECT_TRUE(nothing.Take().empty());
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(LampTest, AStateWithoutUsableSourcesNeverBroadcasts)
{
    ASSERT_TRUE(Load("<s><s actionType='Lamp' action='D'/><s actionType='Lamp' action='D'>"
                     "<x action='A'/></s></s>"));
    for (const ActionStateInfo& source : {a, b, c})
        EXPECT_EQ(ValuesAfter(source, 1), Ints{});
}

TEST_F(LampTest, ASourceNamedTwiceIsOne)
{
    ASSERT_TRUE(Load("<s><s actionType='Lamp' action='D'><x actionType='Lamp' action='A'/>"
                     "<x actionType='Lamp' action='A' actionParam='0'/></s></s>"));
    EXPECT_EQ(ValuesAfter(a, 1), Ints{1});
}

TEST_F(LampTest, StatesFollowFromDerivedStates)
{
    ASSERT_TRUE(Load("<s><s actionType='Lamp' action='D'><x actionType='Lamp' action='C'/>"
                     "<x actionType='Lamp' action='B'/></s><s actionType='Lamp' action='C'>"
                     "<x actionType='Lamp' action='A'/></s></s>"));
    EXPECT_EQ(ValuesAfter(a, 3), Ints{1});
    EXPECT_EQ(ValuesAfter(b, 0), Ints{0});
    EXPECT_EQ(ValuesAfter(a, 0), Ints{0});
    EXPECT_EQ(ValuesAfter(b, 1), Ints{0});
}

TEST_F(LampTest, TwoElementsWithOneStateBothBroadcast)
{
    ASSERT_TRUE(Load("<s><s actionType='Lamp' action='D'><x actionType='Lamp' action='A'/></s>"
                     "<s actionType='Lamp' action='D'><x actionType='Lamp' action='A'/>"
                     "<x actionType='Lamp' action='B'/></s></s>"));
    EXPECT_EQ(ValuesAfter(b, 0), Ints{0});
    EXPECT_EQ(ValuesAfter(a, 1), (Ints{1, 0}));
}

TEST_F(LampTest, AStateThatFollowsFromItselfComesToAnEnd)
{
    ASSERT_TRUE(Load("<s><s actionType='Lamp' action='D'><x actionType='Lamp' action='D'/>"
                     "<x actionType='Lamp' action='A'/></s></s>"));
    const std::vector<int> values = ValuesAfter(a, 1);
    EXPECT_FALSE(values.empty());
    EXPECT_EQ(values, std::vector<int>(values.size(), 1));
    EXPECT_EQ(ValuesAfter(b, 1), Ints{});
}

TEST_F(DerivedStateTest, TheSlotsAreThoseOfTheConsumer)
{
    EXPECT_EQ(test_support::VirtualPlace(&DerivedState::ActionStateChanged), 0u);
    EXPECT_EQ(test_support::VirtualPlace(&DerivedState::ActionNotification), 1u);
}

TEST_F(DerivedStateTest, ManyStatesComeAndGo)
{
    std::string text = "<s>";
    for (int i = 0; i < 3000; ++i)
        text += "<s actionType='Lamp' action='D' actionParam='" + std::to_string(i) +
                "'><x actionType='Lamp' action='A' actionParam='" + std::to_string(i % 10) +
                "'/></s>";
    Listener listener;
    for (int i = 0; i < 3000; ++i)
        listener.ListenTo(State(9, 3, i));
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(Load(text + "</s>"));
        IActionStateConsumer::ActionStateSignal(State(9, 0, 4), 1);
        EXPECT_EQ(listener.Take().size(), 300u);
    }
    DerivedState::DestroyAll();
    IActionStateConsumer::ActionStateSignal(State(9, 0, 4), 1);
    EXPECT_TRUE(listener.Take().empty());
}

// Random definitions and random signals, compared with a plain reference of the broadcasts.

// Derived states written by the words of the contract. Broadcasts within broadcasts end where the
// action library ends them: 64 deep, and after 10,000 of them.
class PlainStates
{
public:
    explicit PlainStates(const PlainElement& root)
    {
        for (const PlainElement& element : root.children) {
            const auto state = PlainState(element);
            if (!state) continue;
            Derived derived{*state, element.Attribute("combine") == L"Or", {}, {}};
            for (const PlainElement& child : element.children)
                if (const auto source = PlainState(child)) derived.sources.insert(*source);
            m_derived.push_back(derived);
        }
    }

    // The broadcasts that all consumers hear after one signal, in order.
    std::vector<StateEvent> Signal(const ActionStateInfo& state, int value)
    {
        m_events.clear();
        m_broadcasts = 0;
        Broadcast(state, value, 1);
        return m_events;
    }

    // All states that the definitions name.
    std::set<ActionStateInfo> Names() const
    {
        std::set<ActionStateInfo> names;
        for (const Derived& derived : m_derived) {
            names.insert(derived.state);
            names.insert(derived.sources.begin(), derived.sources.end());
        }
        return names;
    }

private:
    struct Derived
    {
        ActionStateInfo state;
        bool isOr;
        std::set<ActionStateInfo> sources;
        std::map<ActionStateInfo, int> values;
    };

    static int Result(const Derived& derived)
    {
        int on = 0;
        for (const auto& [source, value] : derived.values)
            if (value != 0) ++on;
        const bool all = on == static_cast<int>(derived.values.size());
        return derived.isOr ? on > 0 : all;
    }

    void Broadcast(const ActionStateInfo& state, int value, int depth)
    {
        if (++m_broadcasts > 10000 || depth > 64) return;
        m_events.emplace_back(state, value);
        for (Derived& derived : m_derived)
            if (derived.sources.contains(state)) {
                derived.values[state] = value;
                Broadcast(derived.state, Result(derived), depth + 1);
            }
    }

    std::vector<Derived> m_derived;
    std::vector<StateEvent> m_events;
    int m_broadcasts = 0;
};

TEST_F(DerivedStateTest, AgreeWithAPlainReferenceOverRandomDefinitions)
{
    std::size_t heard = 0;
    for (unsigned seed = 0; seed < 200; ++seed) {
        RandomDocument random(seed);
        const PlainElement root = random.DerivedStates(static_cast<int>(random.Pick(40)));
        PlainStates plain(root);
        const std::set<ActionStateInfo> names = plain.Names();
        Listener listener; // registered first, so that it hears of a state before its followers do
        for (const ActionStateInfo& name : names)
            listener.ListenTo(name);
        ASSERT_TRUE(Load(random.ToXml(root)));
        for (int step = 0; step < 20 && !names.empty(); ++step) {
            const ActionStateInfo name = *std::next(names.begin(), random.Pick(names.size()));
            const int value = static_cast<int>(random.Pick(3)) - 1;
            IActionStateConsumer::ActionStateSignal(name, value);
            const std::vector<StateEvent> events = listener.Take();
            ASSERT_EQ(events, plain.Signal(name, value)) << "seed " << seed << " step " << step;
            heard += events.size();
        }
    }
    EXPECT_GT(heard, 10000u);
}

TEST_F(DerivedStateTest, DamagedDefinitionsDoNoMoreThanFail)
{
    int loaded = 0;
    for (unsigned seed = 0; seed < 500; ++seed) {
        RandomDocument random(seed);
        std::string xml = random.ToXml(random.DerivedStates(8));
        random.Damage(xml, 1 + random.Pick(2));
        loaded += Load(xml);
        for (int action = 0; action < 4; ++action)
            IActionStateConsumer::ActionStateSignal(State(9, action), 1);
        ASSERT_TRUE(m_log.Take().empty());
    }
    EXPECT_GT(loaded, 50);
}

} // namespace
