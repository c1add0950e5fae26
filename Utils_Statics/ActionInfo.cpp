#include "Utils_Statics/ActionInfo.h"

#include <pro_actions/CProActionCollection.h>
#include <zel_xml/zelXMLNode.h>

#include <new>
#include <utility>

ActionInfo::ActionInfo(ActionType actionType, int actionCode, int actionParam,
                       std::wstring actionName)
    : type(actionType), action(actionCode), param(actionParam), name(std::move(actionName))
{
}

bool ActionInfo::Load(const zelXMLNode& node)
try {
    if (!node.isValid()) return false;
    type = CProActionCollection::MapActionType(node.getAttribute(L"actionType"));
    // An action's code counts within its type, so the type has to be known first.
    action = CProActionCollection::MapAction(type, node.getAttribute(L"action"));
    param = node.getAttributeInt(L"actionParam", 0);
    name = node.getAttribute(L"name");
    return true;
} catch (const std::bad_alloc&) {
    return false;
}
