#include "pro_actions/ActionStateInfo.h"

#include <pro_actions/CProActionCollection.h>
#include <zel_xml/zelXMLNode.h>

#include <exception>
#include <tuple>

void ActionStateInfo::Reset() noexcept
{
    *this = ActionStateInfo();
}

bool ActionStateInfo::Load(const zelXMLNode& node) noexcept
{
    try {
        const ActionType newType =
            CProActionCollection::MapActionType(node.getAttribute(L"actionType"));
        const int newAction =
            CProActionCollection::MapAction(newType, node.getAttribute(L"action"));
        if (newType == actionTypeNone || newAction == -1) return false;
        *this = {newType, newAction, node.getAttributeInt(L"actionParam", 0)};
        return true;
    } catch (const std::exception&) // out of memory
    {
        return false;
    }
}

bool ActionStateInfo::operator<(const ActionStateInfo& other) const noexcept
{
    return std::tie(type, action, param) < std::tie(other.type, other.action, other.param);
}
