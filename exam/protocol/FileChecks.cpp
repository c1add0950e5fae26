#include "protocol/FileChecks.h"

#include "panel/PanelLayout.h"

#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/CProActionCollection.h>
#include <Utils_Statics/ButtonPlacement.h>
#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/XMLEditing.h>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <optional>
#include <vector>

namespace exam {

namespace {

// ---- Elements of all files. Each function adds a finding for everything that its reader in the
// library ignores.

using Names = std::initializer_list<const wchar_t*>;
using States = std::set<ActionStateInfo>;

// Remembers the line on which each thing was found first.
template <class Key>
class FirstLines
{
public:
    // Keeps the element's line. The result names the line of an earlier element with this key;
    // nothing for the first.
    std::optional<std::wstring> Keep(const Key& key, const zelXMLNode& element)
    {
        const auto [entry, isNew] = m_lines.try_emplace(key, zel_xml::LineOf(element));
        if (isNew) return std::nullopt;
        return L"line " + std::to_wstring(entry->second);
    }

private:
    std::map<Key, int> m_lines;
};

bool Contains(Names names, const std::wstring& name)
{
    return std::ranges::find(names, name) != names.end();
}

std::wstring Quoted(const std::wstring& text)
{
    return L"'" + text + L"'";
}

// An element's name in angle brackets.
std::wstring Tag(const zelXMLNode& element)
{
    return L"<" + zel_xml::NameOf(element) + L">";
}

// Reports attributes that nobody reads.
void CheckAttributes(const zelXMLNode& element, Names known, Findings& findings)
{
    for (const std::wstring& name : zel_xml::AttributeNamesOf(element))
        if (!Contains(known, name))
            findings.Add(element, L"the attribute " + name + L" of " + Tag(element) +
                                      L" is ignored: nobody reads it");
}

// Reports child elements that nobody reads: those of other names, and a second one of the same
// name.
void CheckChildren(const zelXMLNode& element, Names known, Findings& findings)
{
    FirstLines<std::wstring> lines;
    for (zelXMLNode child = element.getFirstChild(); child.isValid(); ++child) {
        const std::wstring name = zel_xml::NameOf(child);
        const std::wstring ignored = Tag(child) + L" is ignored: ";
        if (!Contains(known, name))
            findings.Add(child, ignored + L"nobody reads it");
        else if (const auto line = lines.Keep(name, child))
            findings.Add(child, ignored + *line + L" has one already");
    }
}

// Reports an attribute whose text is no number for `get`. The getters answer the default when the
// text is no number, so a number gives the same answer for both defaults.
template <class Number>
void CheckNumber(const zelXMLNode& element, const wchar_t* attribute, const wchar_t* kind,
                 Number (zelXMLNode::*get)(const wchar_t*, Number) const, Findings& findings)
{
    const bool isNumber = (element.*get)(attribute, 0) == (element.*get)(attribute, 1);
    if (isNumber || !zel_xml::HasAttribute(element, attribute)) return;
    findings.Add(element, std::wstring(attribute) + L" counts as missing: " +
                              Quoted(element.getAttribute(attribute)) + L" is no " + kind);
}

void CheckInteger(const zelXMLNode& element, const wchar_t* attribute, Findings& findings)
{
    CheckNumber(element, attribute, L"integer of 32 bits", &zelXMLNode::getAttributeInt, findings);
}

void CheckReal(const zelXMLNode& element, const wchar_t* attribute, Findings& findings)
{
    CheckNumber(element, attribute, L"real number", &zelXMLNode::getAttributeDouble, findings);
}

// The reason why an element does not name an action; empty when it names one.
std::wstring FindActionProblem(const zelXMLNode& element)
{
    const std::wstring typeName = element.getAttribute(L"actionType");
    const std::wstring actionName = element.getAttribute(L"action");
    if (typeName.empty()) return L"it has no actionType";
    const ActionType type = CProActionCollection::MapActionType(typeName);
    if (type == actionTypeNone) return L"the vocabulary has no action type " + Quoted(typeName);
    if (actionName.empty()) return L"it has no action";
    if (CProActionCollection::MapAction(type, actionName) == -1)
        return L"the action type " + Quoted(typeName) + L" has no action " + Quoted(actionName);
    return L"";
}

// Reads the attributes "actionType", "action" and "actionParam" that name an action. Without an
// action it adds a finding that begins with `consequence`.
std::optional<ActionStateInfo> CheckAction(const zelXMLNode& element,
                                           const std::wstring& consequence, Findings& findings)
{
    CheckInteger(element, L"actionParam", findings);
    ActionStateInfo action;
    if (action.Load(element)) return action;
    findings.Add(element, consequence + L": " + FindActionProblem(element));
    return std::nullopt;
}

// Checks the children of an element, each of which names a state. The result is the states that are
// not ignored.
States CheckStates(const zelXMLNode& element, const std::wstring& ignored, Findings& findings)
{
    States states;
    FirstLines<ActionStateInfo> lines;
    for (zelXMLNode child = element.getFirstChild(); child.isValid(); ++child) {
        CheckAttributes(child, {L"actionType", L"action", L"actionParam"}, findings);
        const auto state = CheckAction(child, ignored, findings);
        if (!state) continue;
        if (const auto line = lines.Keep(*state, child))
            findings.Add(child, ignored + L": " + *line + L" has it already");
        states.insert(*state);
    }
    return states;
}

// Calls `check` for each child that has a name of its own. Of the others it says that they are
// `ignored`, and of a repeated name that the earlier line `has` it.
template <class Check>
void CheckNamed(const zelXMLNode& root, const std::wstring& ignored, const wchar_t* has,
                Findings& findings, const Check& check)
{
    FirstLines<std::wstring> lines;
    for (zelXMLNode element = root.getFirstChild(); element.isValid(); ++element) {
        const std::wstring name = element.getAttribute(L"name");
        if (name.empty())
            findings.Add(element, ignored + L": it has no name");
        else if (const auto line = lines.Keep(name, element))
            findings.Add(element, ignored + L": " + *line + has + Quoted(name) + L" already");
        else
            check(element, name);
    }
}

// ---- ButtonActions.xml, which ActionRepository reads

constexpr const wchar_t* actionElements[] = {L"Push1", L"Push2", L"Decrement", L"Increment"};

void CheckButtonAction(const zelXMLNode& action, Findings& findings)
{
    if (!action.isValid()) return;
    CheckAttributes(action, {L"actionType", L"action", L"actionParam", L"name"}, findings);
    CheckAction(action, Tag(action) + L" does nothing", findings);
}

void CheckButton(const zelXMLNode& button, Findings& findings)
{
    CheckAttributes(button, {L"name"}, findings);
    CheckChildren(button, {L"Push1", L"Push2", L"Decrement", L"Increment", L"States"}, findings);
    for (const wchar_t* const element : actionElements)
        CheckButtonAction(button.getChildByName(element, false), findings);
    CheckStates(button.getChildByName(L"States", false), L"the state is ignored", findings);
}

// ---- button_states.xml, which DerivedState reads

using SourcesOfStates = std::map<ActionStateInfo, States>;

void CheckCombine(const zelXMLNode& element, Findings& findings)
{
    const std::wstring combine = element.getAttribute(L"combine");
    if (combine == L"Or" || combine == L"And" || !zel_xml::HasAttribute(element, L"combine"))
        return;
    findings.Add(element, L"combine counts as And: " + Quoted(combine) + L" is not Or");
}

States CheckSources(const zelXMLNode& element, Findings& findings)
{
    States sources = CheckStates(element, L"the source is ignored", findings);
    if (sources.empty()) findings.Add(element, L"the state is never told: it has no usable source");
    return sources;
}

// Appends the states that `start` leads to and that are not yet in `seen`, itself included, each
// behind those it leads to.
void Follow(const SourcesOfStates& sources, const ActionStateInfo& start, States& seen,
            std::vector<ActionStateInfo>& order)
{
    std::vector<std::pair<ActionStateInfo, bool>> pending{{start, false}};
    while (!pending.empty()) {
        const auto [state, isDone] = pending.back();
        pending.pop_back();
        if (isDone) order.push_back(state);
        if (isDone || !seen.insert(state).second) continue;
        pending.emplace_back(state, true);
        if (const auto found = sources.find(state); found != sources.end())
            for (const ActionStateInfo& source : found->second)
                pending.emplace_back(source, false);
    }
}

// The states that follow from themselves, directly or through others. Kosaraju's algorithm finds
// them by two depth-first searches, in time in proportion to the file: the second one goes the ways
// back in the reverse order of the first, and finds together the states that lead to each other.
States CircularStates(const SourcesOfStates& sources)
{
    States circular;
    States seen;
    std::vector<ActionStateInfo> order;
    SourcesOfStates back;
    for (const auto& [state, sourcesOfState] : sources) {
        Follow(sources, state, seen, order);
        for (const ActionStateInfo& source : sourcesOfState) {
            back[source].insert(state);
            if (source == state) circular.insert(state);
        }
    }
    seen.clear();
    std::ranges::reverse(order);
    for (const ActionStateInfo& state : order) {
        std::vector<ActionStateInfo> together;
        Follow(back, state, seen, together);
        if (together.size() > 1) circular.insert(together.begin(), together.end());
    }
    return circular;
}

// ---- panel.xml, which the control panel reads

void CheckGrid(const zelXMLNode& grid, Findings& findings)
{
    CheckAttributes(grid, {L"row", L"column", L"height", L"span", L"offset", L"displacement"},
                    findings);
    CheckChildren(grid, {}, findings);
    for (const wchar_t* const attribute : {L"row", L"column"})
        CheckInteger(grid, attribute, findings);
    for (const wchar_t* const attribute : {L"height", L"span", L"offset", L"displacement"})
        CheckReal(grid, attribute, findings);
}

// The reason why a placement shows no button; empty when it shows one.
std::wstring FindPlaceProblem(const ButtonPlacement& placement,
                              const std::set<std::wstring>& buttons)
{
    if (!buttons.empty() && !buttons.contains(placement.name))
        return L"there is no button " + Quoted(placement.name);
    if (!placement.grid.IsValid()) return L"it has no row and column";
    if (PanelGrid::Holds(placement.grid)) return L"";
    return L"it does not lie on the grid of " + std::to_wstring(PanelGrid::rows) + L" rows and " +
           std::to_wstring(PanelGrid::columns) + L" columns";
}

void CheckPlacement(const zelXMLNode& element, const std::set<std::wstring>& buttons,
                    Findings& findings)
{
    CheckAttributes(element, {L"name", L"check"}, findings);
    CheckChildren(element, {L"Grid"}, findings);
    CheckInteger(element, L"check", findings);
    CheckGrid(element.getChildByName(L"Grid", false), findings);
    ButtonPlacement placement;
    placement.Load(element);
    const std::wstring problem = FindPlaceProblem(placement, buttons);
    if (!problem.empty()) findings.Add(element, L"the placement shows nothing: " + problem);
}

} // namespace

void CheckButtonActions(const zelXMLNode& root, std::set<std::wstring>& names, Findings& findings)
{
    CheckNamed(root, L"the button is ignored", L" has one named ", findings,
               [&](const zelXMLNode& button, const std::wstring& name) {
                   CheckButton(button, findings);
                   names.insert(name);
               });
}

void CheckButtonStates(const zelXMLNode& root, Findings& findings)
{
    SourcesOfStates sources;
    FirstLines<ActionStateInfo> lines;
    std::vector<std::pair<zelXMLNode, ActionStateInfo>> derived;
    for (zelXMLNode element = root.getFirstChild(); element.isValid(); ++element) {
        CheckAttributes(element, {L"actionType", L"action", L"actionParam", L"combine"}, findings);
        const auto state =
            CheckAction(element, L"the derived state is ignored with its sources", findings);
        if (!state) continue;
        if (const auto line = lines.Keep(*state, element))
            findings.Add(element, L"the state is told twice: " + *line + L" derives it already");
        CheckCombine(element, findings);
        sources[*state].merge(CheckSources(element, findings));
        derived.emplace_back(element, *state);
    }
    const States circular = CircularStates(sources);
    for (const auto& [element, state] : derived)
        if (circular.contains(state))
            findings.Add(element, L"the state follows from itself: its broadcasts are cut off");
}

void CheckPanel(const zelXMLNode& root, const std::set<std::wstring>& buttons, Findings& findings)
{
    CheckNamed(root, L"the placement is ignored", L" places ", findings,
               [&](const zelXMLNode& element, const std::wstring&) {
                   CheckPlacement(element, buttons, findings);
               });
}

} // namespace exam
