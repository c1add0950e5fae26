#pragma once

#include "window/MainWindow.h"

#include <pro_actions/ActionStateInfo.h>
#include <Utils_Statics/IStateChangeConsumer.h>

#include <map>

namespace exam {

/// Broadcasts the application's action states, each when it has changed. The state-change signal
/// triggers the look at the states.
class ExamStates : private IStateChangeConsumer
{
public:
    ExamStates(const MainWindow& window, const Session& session);

    /// Broadcasts every state, for consumers that registered after the last broadcast.
    void BroadcastAll();

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    void BroadcastChanges();

    const MainWindow& m_window;
    const Session& m_session;
    std::map<ActionStateInfo, int> m_told;
};

} // namespace exam
