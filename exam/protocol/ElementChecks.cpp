#include "protocol/ElementChecks.h"

#include <pro_actions/CProActionCollection.h>
#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/XMLEditing.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace exam {

namespace {

bool Contains(std::initializer_list<const wchar_t*> names, const std::wstring& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::wstring Quoted(const std::wstring& text)
{
    return L"'" + text + L"'";
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

// The getters answer the default when the text is no number, so a number gives the same answer for
// both defaults.
bool IsInteger(const zelXMLNode& element, const wchar_t* attribute)
{
    return element.getAttributeInt(attribute, 0) == element.getAttributeInt(attribute, 1);
}

bool IsReal(const zelXMLNode& element, const wchar_t* attribute)
{
    return element.getAttributeDouble(attribute, 0) == element.getAttributeDouble(attribute, 1);
}

void CheckNumber(bool isNumber, const zelXMLNode& element, const wchar_t* attribute,
                 const wchar_t* kind, Findings& findings)
{
    if (isNumber || !zel_xml::HasAttribute(element, attribute)) return;
    findings.Add(element, std::wstring(attribute) + L" counts as missing: " +
                              Quoted(element.getAttribute(attribute)) + L" is no " + kind);
}

} // namespace

std::wstring Tag(const zelXMLNode& element)
{
    return L"<" + zel_xml::NameOf(element) + L">";
}

void CheckAttributes(const zelXMLNode& element, std::initializer_list<const wchar_t*> known,
                     Findings& findings)
{
    for (const std::wstring& name : zel_xml::AttributeNamesOf(element))
        if (!Contains(known, name))
            findings.Add(element, L"the attribute " + name + L" of " + Tag(element) +
                                      L" is ignored: nobody reads it");
}

void CheckChildren(const zelXMLNode& element, std::initializer_list<const wchar_t*> known,
                   Findings& findings)
{
    FirstLines<std::wstring> lines;
    for (zelXMLNode child = element.getFirstChild(); child.isValid(); ++child) {
        const std::wstring name = zel_xml::NameOf(child);
        const std::wstring ignored = Tag(child) + L" is ignored: ";
        if (!Contains(known, name))
            findings.Add(child, ignored + L"nobody reads it");
        else if (const auto line = lines.Keep(name, zel_xml::LineOf(child)))
            findings.Add(child, ignored + L"line " + std::to_wstring(*line) + L" has one already");
    }
}

void CheckInteger(const zelXMLNode& element, const wchar_t* attribute, Findings& findings)
{
    CheckNumber(IsInteger(element, attribute), element, attribute, L"integer of 32 bits", findings);
}

void CheckReal(const zelXMLNode& element, const wchar_t* attribute, Findings& findings)
{
    CheckNumber(IsReal(element, attribute), element, attribute, L"real number", findings);
}

std::optional<ActionStateInfo> CheckAction(const zelXMLNode& element,
                                           const std::wstring& consequence, Findings& findings)
{
    CheckInteger(element, L"actionParam", findings);
    ActionStateInfo action;
    if (action.Load(element)) return action;
    findings.Add(element, consequence + L": " + FindActionProblem(element));
    return std::nullopt;
}

} // namespace exam
