#pragma once

#include "commands/Command.h"

#include <pro_actions/ActionStateInfo.h>
#include <Utils_Statics/ActionInfo.h>

#include <map>

namespace exam {

/// A key that is pressed, and what is held with it.
struct KeyPress
{
    UINT key = 0;          ///< virtual key
    bool control = false;  ///< Ctrl is held
    bool other = false;    ///< Shift, Alt or a Windows key is held
    bool isRepeat = false; ///< the key was down already
};

/// Has commands carried out, and broadcasts their states as action states, each when it has
/// changed. The state-change signal triggers the look at the states.
class CommandDesk : private IStateChangeConsumer
{
public:
    explicit CommandDesk(Examination& exam) : m_exam(exam) {}

    /// Carries the command of a key out. Keys that belong to no command, with what is held, do
    /// nothing, and neither does one that is held and whose command does not repeat.
    void Press(const KeyPress& press);

    /// Carries a command out with the parameter of its key, if it is possible.
    void CarryOut(const Command& command);

    /// Carries an action out, and notifies the consumers of action notifications. The status line
    /// reports an action without effect here: there is no transmitter, no printer and no patient
    /// list.
    void CarryOut(const ActionInfo& action);

    /// Broadcasts every state, for consumers that registered after the last broadcast.
    void BroadcastAll();

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    void BroadcastChanges();

    Examination& m_exam;
    std::map<ActionStateInfo, int> m_told;
};

} // namespace exam
