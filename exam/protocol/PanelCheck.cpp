// Finds what the control panel ignores in "panel.xml".
#include "panel/PanelLayout.h"
#include "protocol/ElementChecks.h"
#include "protocol/FileChecks.h"

#include <Utils_Statics/ButtonPlacement.h>
#include <zel_xml/XMLDiagnosis.h>

#include <vector>

namespace exam {

namespace {

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
        return L"there is no button '" + placement.name + L"'";
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

void CheckPanel(const zelXMLNode& root, const std::set<std::wstring>& buttons, Findings& findings)
{
    FirstLines<std::wstring> lines;
    for (zelXMLNode element = root.getFirstChild(); element.isValid(); ++element) {
        const std::wstring name = element.getAttribute(L"name");
        if (name.empty())
            findings.Add(element, L"the placement is ignored: it has no name");
        else if (const auto line = lines.Keep(name, zel_xml::LineOf(element)))
            findings.Add(element, L"the placement is ignored: line " + std::to_wstring(*line) +
                                      L" places '" + name + L"' already");
        else
            CheckPlacement(element, buttons, findings);
    }
}

} // namespace exam
