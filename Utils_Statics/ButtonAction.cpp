#include "Utils_Statics/ButtonAction.h"

#include <zel_xml/zelXMLNode.h>

#include <new>

namespace {

void LoadAction(ActionInfo& action, const zelXMLNode& button, const wchar_t* child)
{
    action.Load(button.getChildByName(child, false));
}

void LoadStates(std::set<ActionStateInfo>& states, const zelXMLNode& list)
{
    for (zelXMLNode child = list.getFirstChild(); child.isValid(); ++child) {
        ActionStateInfo state;
        if (state.Load(child)) states.insert(state);
    }
}

} // namespace

bool ButtonAction::Load(const zelXMLNode& node)
try {
    if (!node.isValid()) return false;
    name = node.getAttribute(L"name");
    if (name.empty()) return false;
    LoadAction(push1, node, L"Push1");
    LoadAction(push2, node, L"Push2");
    LoadAction(decrement, node, L"Decrement");
    LoadAction(increment, node, L"Increment");
    states.clear();
    LoadStates(states, node.getChildByName(L"States", false));
    return true;
} catch (const std::bad_alloc&) {
    return false;
}
