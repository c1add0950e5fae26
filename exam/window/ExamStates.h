#pragma once

#include "window/MainWindow.h"

#include <Utils_Statics/IStateChangeConsumer.h>
#include <pro_actions/ActionStateInfo.h>

#include <map>

namespace exam {

/// Broadcasts what the application is doing as action states, each when it has changed: whenever
/// the state-change signal tells of a change, the states are looked at.
class ExamStates : private IStateChangeConsumer
{
public:
    ExamStates(const MainWindow& window, const Session& session);

    /// Broadcasts every state, for consumers that have registered since.
    void BroadcastAll();

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    void BroadcastChanges();

    const MainWindow& m_window;
    const Session& m_session;
    std::map<ActionStateInfo, int> m_told;
};

} // namespace exam
