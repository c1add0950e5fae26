#pragma once

#include <Utils_Statics/ActionInfo.h>
#include <Utils_Statics/export.h>
#include <pro_actions/ActionStateInfo.h>

#include <set>
#include <string>

/// What a button of the console does, and which action states it shows. The element that it is
/// read from is described in docs/formats/button-actions.md.
struct UTILS_STATICS_API ButtonAction
{
    std::wstring name;                ///< the button's name; never empty in the repository
    ActionInfo push1;                 ///< of the first push
    ActionInfo push2;                 ///< of the second push
    ActionInfo decrement;             ///< of turning the control down
    ActionInfo increment;             ///< of turning the control up
    std::set<ActionStateInfo> states; ///< what the button's lamp follows

    /// Reads the button from its element.
    ///
    /// An action whose child element is missing keeps the value it had. The states are replaced.
    /// States that the vocabulary does not know are left out; of equivalent ones the first stays.
    ///
    /// False for an invalid element, which changes nothing, and for an element without a name,
    /// which empties the name and changes nothing else.
    bool Load(const zelXMLNode& node);
};
