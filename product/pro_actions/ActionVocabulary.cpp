#include "ActionVocabulary.h"

#include <zel_xml/zelXMLNode.h>

namespace pro_actions {

namespace {

bool addEntry(NumberedNames& names, const zelXMLNode& element, const wchar_t* numberAttribute)
{
    return names.add(element.getAttribute(L"name"), element.getAttributeInt(numberAttribute, -1));
}

} // namespace

bool NumberedNames::add(const std::wstring& name, int number)
{
    if (name.empty() || number == -1 || m_numbers.contains(name) || m_names.contains(number))
        return false;
    m_numbers.emplace(name, number);
    m_names.emplace(number, name);
    return true;
}

int NumberedNames::numberOf(std::wstring_view name) const noexcept
{
    const auto found = m_numbers.find(name);
    return found == m_numbers.end() ? -1 : found->second;
}

std::wstring NumberedNames::nameOf(int number) const
{
    const auto found = m_names.find(number);
    return found == m_names.end() ? std::wstring() : found->second;
}

bool ActionVocabulary::read(const zelXMLNode& root)
{
    for (zelXMLNode element = root.getFirstChild(); element.isValid(); ++element)
        if (!readType(element)) return false;
    return true;
}

bool ActionVocabulary::readType(const zelXMLNode& element)
{
    if (!addEntry(m_types, element, L"value")) return false;
    NumberedNames& actions = m_actions[element.getAttributeInt(L"value", -1)];
    for (zelXMLNode action = element.getFirstChild(); action.isValid(); ++action)
        if (!addEntry(actions, action, L"code")) return false;
    return true;
}

const NumberedNames& ActionVocabulary::actionsOf(ActionType type) const noexcept
{
    static const NumberedNames none;
    const auto found = m_actions.find(type);
    return found == m_actions.end() ? none : found->second;
}

} // namespace pro_actions
