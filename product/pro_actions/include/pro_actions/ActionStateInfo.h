#pragma once

#include <pro_actions/ActionType.h>
#include <pro_actions/export.h>

class zelXMLNode;

/// The identity of an action state: an action of the vocabulary with its parameter. The state's
/// value is not part of it; each broadcast carries it (IActionStateConsumer::ActionStateSignal).
struct PRO_ACTIONS_API ActionStateInfo
{
    ActionType type = actionTypeNone; ///< the action's family; -1: no state
    int action = -1;                  ///< the action within its family; -1: no state
    int param = 0;                    ///< its meaning depends on the action

    /// Resets to no state: type and action -1, parameter 0.
    void Reset() noexcept;

    /// Reads the attributes "actionType" and "action" (names of the vocabulary) and "actionParam"
    /// (integer, 0 when it is missing). False, with nothing changed, when the element is invalid or
    /// the vocabulary lacks one of the names.
    bool Load(const zelXMLNode& node) noexcept;

    /// Orders by type, then action, then parameter.
    bool operator<(const ActionStateInfo& other) const noexcept;
    /// Compares all three fields.
    bool operator==(const ActionStateInfo& other) const noexcept = default;
};
