// Random definitions and random signals, compared with a plain reference of the broadcasts.
#include "DerivedStateFixture.h"
#include "PlainVocabulary.h"
#include "RandomDocument.h"

#include <map>
#include <set>

namespace {

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
        for (unsigned change = 1 + random.Pick(2); change > 0; --change) {
            const std::size_t at = random.Pick(xml.size());
            if (random.Pick(2) == 0)
                xml[at] = static_cast<char>(random.Pick(256));
            else
                xml.erase(at, random.Pick(40));
        }
        loaded += Load(xml);
        for (int action = 0; action < 4; ++action)
            IActionStateConsumer::ActionStateSignal(State(9, action), 1);
        ASSERT_TRUE(m_log.Take().empty());
    }
    EXPECT_GT(loaded, 50);
}

} // namespace
