#pragma once

#include <pro_actions/ActionType.h>
#include <Utils_Statics/export.h>

#include <cstdint>
#include <string>

class zelXMLNode;

/// One action that a push or a turn of a control carries out, in the numbers of the action
/// vocabulary (CProActionCollection). docs/formats/button-actions.md describes the element that
/// holds it.
struct UTILS_STATICS_API ActionInfo
{
    ActionType type = actionTypeNone; ///< the action's family; -1: no action
    std::int32_t action = -1;         ///< the action within its family; -1: none
    std::int32_t param = 0;           ///< its meaning depends on the action
    std::wstring name;                ///< for display or look-up; may be empty

    ActionInfo() = default;
    /// Sets each field as given; nothing is looked up in the vocabulary.
    ActionInfo(ActionType actionType, int actionCode, int actionParam, std::wstring actionName);

    /// Reads the attributes "actionType", "action", "actionParam" and "name". Every field is set; a
    /// text that is missing or that the vocabulary does not know becomes -1. Only an invalid
    /// element gives false, and it changes nothing.
    bool Load(const zelXMLNode& node);
};
