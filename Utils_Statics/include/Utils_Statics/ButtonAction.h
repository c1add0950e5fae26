#pragma once

#include <pro_actions/ActionStateInfo.h>
#include <Utils_Statics/ActionInfo.h>
#include <Utils_Statics/export.h>

#include <set>
#include <string>

/// The actions of a button of the console, and the action states that it shows.
/// docs/formats/button-actions.md describes the element that holds it.
struct UTILS_STATICS_API ButtonAction
{
    std::wstring name;                ///< the button's name; never empty in the repository
    ActionInfo push1;                 ///< the action of the first push
    ActionInfo push2;                 ///< the action of the second push
    ActionInfo decrement;             ///< the action of turning the control down
    ActionInfo increment;             ///< the action of turning the control up
    std::set<ActionStateInfo> states; ///< the states that the button's lamp follows

    /// Reads the button from its element.
    ///
    /// An action whose child element is missing keeps its value. The states are replaced. States
    /// that the vocabulary does not know are left out; the first of equivalent states stays.
    ///
    /// False for an invalid element, which changes nothing, and for an element without a name,
    /// which empties the name and changes nothing else.
    bool Load(const zelXMLNode& node);
};
