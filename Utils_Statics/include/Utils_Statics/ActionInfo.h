#pragma once

#include <Utils_Statics/export.h>
#include <pro_actions/ActionType.h>

#include <cstdint>
#include <string>

class zelXMLNode;

/// One action that a push or a turn of a control carries out, in the numbers of the action
/// vocabulary (CProActionCollection). The element that it is read from is described in
/// docs/formats/button-actions.md.
struct UTILS_STATICS_API ActionInfo
{
    ActionType type = actionTypeNone; ///< the action's family; -1: no action
    std::int32_t action = -1;         ///< the action within its family; -1: none
    std::int32_t param = 0;           ///< what the parameter means is the action's matter
    std::wstring name;                ///< for display or look-up; may be empty

    ActionInfo() = default;
    ActionInfo(ActionType actionType, int actionCode, int actionParam, std::wstring actionName);

    /// Reads the attributes "actionType", "action", "actionParam" and "name". Every field is set: a
    /// text that the vocabulary does not know, or that is missing, becomes -1. False, and nothing
    /// changes, only when the element is invalid.
    bool Load(const zelXMLNode& node);
};
