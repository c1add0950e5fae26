// Finds what DerivedState ignores in "button_states.xml", and states that follow from themselves.
#include "protocol/Circles.h"
#include "protocol/ElementChecks.h"
#include "protocol/FileChecks.h"

#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/XMLEditing.h>

#include <map>
#include <set>
#include <vector>

namespace exam {

namespace {

using Sources = std::set<ActionStateInfo>;
using SourcesOfStates = std::map<ActionStateInfo, Sources>;

void CheckCombine(const zelXMLNode& element, Findings& findings)
{
    const std::wstring combine = element.getAttribute(L"combine");
    if (combine == L"Or" || combine == L"And" || !zel_xml::HasAttribute(element, L"combine"))
        return;
    findings.Add(element, L"combine counts as And: '" + combine + L"' is not Or");
}

Sources CheckSources(const zelXMLNode& element, Findings& findings)
{
    Sources sources;
    FirstLines<ActionStateInfo> lines;
    for (zelXMLNode source = element.getFirstChild(); source.isValid(); ++source) {
        CheckAttributes(source, {L"actionType", L"action", L"actionParam"}, findings);
        const auto info = CheckAction(source, L"the source is ignored", findings);
        if (!info) continue;
        if (const auto line = lines.Keep(*info, zel_xml::LineOf(source)))
            findings.Add(source, L"the source is ignored: line " + std::to_wstring(*line) +
                                     L" has it already");
        sources.insert(*info);
    }
    if (sources.empty()) findings.Add(element, L"the state is never told: it has no usable source");
    return sources;
}

// The states that follow from themselves, directly or through others.
std::set<ActionStateInfo> CircularStates(const SourcesOfStates& states)
{
    std::map<ActionStateInfo, std::size_t> numbers;
    for (const auto& [state, sources] : states)
        numbers.emplace(state, numbers.size());
    Graph graph(states.size());
    for (const auto& [state, sources] : states)
        for (const ActionStateInfo& source : sources)
            if (const auto found = numbers.find(source); found != numbers.end())
                graph[numbers[state]].push_back(found->second);

    const std::vector<bool> isCircular = NodesOnCircles(graph);
    std::set<ActionStateInfo> circular;
    for (const auto& [state, number] : numbers)
        if (isCircular[number]) circular.insert(state);
    return circular;
}

} // namespace

void CheckButtonStates(const zelXMLNode& root, Findings& findings)
{
    SourcesOfStates states;
    FirstLines<ActionStateInfo> lines;
    std::vector<std::pair<zelXMLNode, ActionStateInfo>> derived;
    for (zelXMLNode element = root.getFirstChild(); element.isValid(); ++element) {
        CheckAttributes(element, {L"actionType", L"action", L"actionParam", L"combine"}, findings);
        const auto state =
            CheckAction(element, L"the derived state is ignored with its sources", findings);
        if (!state) continue;
        if (const auto line = lines.Keep(*state, zel_xml::LineOf(element)))
            findings.Add(element, L"the state is told twice: line " + std::to_wstring(*line) +
                                      L" derives it already");
        CheckCombine(element, findings);
        states[*state].merge(CheckSources(element, findings));
        derived.emplace_back(element, *state);
    }
    const std::set<ActionStateInfo> circular = CircularStates(states);
    for (const auto& [element, state] : derived)
        if (circular.contains(state))
            findings.Add(element, L"the state follows from itself: its broadcasts are cut off");
}

} // namespace exam
