#pragma once

#include "ActionsFixture.h"

#include <Utils_Statics/DerivedState.h>

#include <ostream>
#include <utility>
#include <vector>

using StateEvent = std::pair<ActionStateInfo, int>;

inline std::ostream& operator<<(std::ostream& out, const ActionStateInfo& state)
{
    return out << state.type << '/' << state.action << '/' << state.param;
}

// Keeps the broadcasts of the states it listens to.
class Listener : public IActionStateConsumer
{
public:
    void ListenTo(const ActionStateInfo& state) { RegisterActionSignal(state); }

    void ActionStateChanged(const ActionStateInfo& source, int value) override
    {
        m_events.emplace_back(source, value);
    }
    void ActionNotification(ActionType, int, int) override {}

    // The broadcasts heard since the last call.
    std::vector<StateEvent> Take() { return std::exchange(m_events, {}); }

private:
    std::vector<StateEvent> m_events;
};

// The protocol folders, a vocabulary, a log, and no derived state yet.
class DerivedStateTest : public testing::Test
{
protected:
    DerivedStateTest() { DerivedState::DestroyAll(); }
    ~DerivedStateTest() override { DerivedState::DestroyAll(); }

    bool Load(const std::string& text)
    {
        test_support::WriteFile(m_protocol / L"fallback\\button_states.xml", text);
        return DerivedState::LoadAll();
    }

    ProtocolFolders m_protocol;
    TestVocabulary m_vocabulary{m_protocol / L"actions.xml"};
    test_support::LogCapture m_log;
};
