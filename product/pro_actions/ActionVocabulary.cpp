#include "ActionVocabulary.h"

#include <zel_xml/zelXMLNode.h>

#include <mutex>

namespace pro_actions {

namespace {

// The vocabulary in use and its lock.
struct Current
{
    std::mutex mutex;
    std::shared_ptr<const ActionVocabulary> vocabulary;
};

Current& TheCurrent() noexcept
{
    static Current current;
    return current;
}

bool AddEntry(NumberedNames& names, const zelXMLNode& element, const wchar_t* numberAttribute)
{
    return names.Add(element.getAttribute(L"name"), element.getAttributeInt(numberAttribute, -1));
}

} // namespace

bool NumberedNames::Add(const std::wstring& name, int number)
{
    if (name.empty() || number == -1 || m_numbers.contains(name) || m_names.contains(number))
        return false;
    m_numbers.emplace(name, number);
    m_names.emplace(number, name);
    return true;
}

int NumberedNames::NumberOf(std::wstring_view name) const noexcept
{
    const auto found = m_numbers.find(name);
    return found == m_numbers.end() ? -1 : found->second;
}

std::wstring NumberedNames::NameOf(int number) const
{
    const auto found = m_names.find(number);
    return found == m_names.end() ? std::wstring() : found->second;
}

bool ActionVocabulary::Read(const zelXMLNode& root)
{
    for (zelXMLNode element = root.getFirstChild(); element.isValid(); ++element)
        if (!ReadType(element)) return false;
    return true;
}

bool ActionVocabulary::ReadType(const zelXMLNode& element)
{
    if (!AddEntry(m_types, element, L"value")) return false;
    NumberedNames& actions = m_actions[element.getAttributeInt(L"value", -1)];
    for (zelXMLNode action = element.getFirstChild(); action.isValid(); ++action)
        if (!AddEntry(actions, action, L"code")) return false;
    return true;
}

const NumberedNames& ActionVocabulary::ActionsOf(ActionType type) const noexcept
{
    static const NumberedNames none;
    const auto found = m_actions.find(type);
    return found == m_actions.end() ? none : found->second;
}

std::shared_ptr<const ActionVocabulary> CurrentVocabulary() noexcept
{
    const std::scoped_lock lock(TheCurrent().mutex);
    return TheCurrent().vocabulary;
}

void SetCurrentVocabulary(std::shared_ptr<const ActionVocabulary> vocabulary) noexcept
{
    const std::scoped_lock lock(TheCurrent().mutex);
    TheCurrent().vocabulary.swap(vocabulary);
}

} // namespace pro_actions
