// Finds what ActionRepository ignores in "ButtonActions.xml".
#include "protocol/ElementChecks.h"
#include "protocol/FileChecks.h"

#include <zel_xml/XMLDiagnosis.h>

namespace exam {

namespace {

constexpr const wchar_t* actionElements[] = {L"Push1", L"Push2", L"Decrement", L"Increment"};

void CheckButtonAction(const zelXMLNode& action, Findings& findings)
{
    if (!action.isValid()) return;
    CheckAttributes(action, {L"actionType", L"action", L"actionParam", L"name"}, findings);
    CheckAction(action, Tag(action) + L" does nothing", findings);
}

void CheckStates(const zelXMLNode& states, Findings& findings)
{
    FirstLines<ActionStateInfo> lines;
    for (zelXMLNode state = states.getFirstChild(); state.isValid(); ++state) {
        CheckAttributes(state, {L"actionType", L"action", L"actionParam"}, findings);
        const auto info = CheckAction(state, L"the state is ignored", findings);
        if (!info) continue;
        if (const auto line = lines.Keep(*info, zel_xml::LineOf(state)))
            findings.Add(state, L"the state is ignored: line " + std::to_wstring(*line) +
                                    L" has it already");
    }
}

void CheckButton(const zelXMLNode& button, Findings& findings)
{
    CheckAttributes(button, {L"name"}, findings);
    CheckChildren(button, {L"Push1", L"Push2", L"Decrement", L"Increment", L"States"}, findings);
    for (const wchar_t* const element : actionElements)
        CheckButtonAction(button.getChildByName(element, false), findings);
    CheckStates(button.getChildByName(L"States", false), findings);
}

} // namespace

void CheckButtonActions(const zelXMLNode& root, std::set<std::wstring>& names, Findings& findings)
{
    FirstLines<std::wstring> lines;
    for (zelXMLNode button = root.getFirstChild(); button.isValid(); ++button) {
        const std::wstring name = button.getAttribute(L"name");
        if (name.empty()) {
            findings.Add(button, L"the button is ignored: it has no name");
        } else if (const auto line = lines.Keep(name, zel_xml::LineOf(button))) {
            findings.Add(button, L"the button is ignored: line " + std::to_wstring(*line) +
                                     L" has one named '" + name + L"' already");
        } else {
            CheckButton(button, findings);
            names.insert(name);
        }
    }
}

} // namespace exam
