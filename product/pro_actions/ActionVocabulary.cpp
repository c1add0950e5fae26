// The vocabulary of actions: what is looked up in it, and how the host loads it.
#include <base/SlimLock.h>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/VocabularyLoading.h>
#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace {

// A one-to-one table of names and numbers.
class NumberedNames
{
public:
    // False, with nothing added, when the name is empty, the number is -1 or either is already
    // present.
    bool Add(const std::wstring& name, int number);

    int NumberOf(std::wstring_view name) const noexcept; // -1 when unknown
    std::wstring NameOf(int number) const;               // empty when unknown

private:
    std::map<std::wstring, int, std::less<>> m_numbers;
    std::map<int, std::wstring> m_names;
};

// One vocabulary. It never changes after Read.
class ActionVocabulary
{
public:
    // Adds the entries listed in the file's document element; false at the first unusable entry.
    bool Read(const zelXMLNode& root);

    const NumberedNames& Types() const noexcept { return m_types; }
    const NumberedNames& ActionsOf(ActionType type) const noexcept;

private:
    bool ReadType(const zelXMLNode& element);

    NumberedNames m_types;
    std::map<int, NumberedNames> m_actions;
};

bool AddEntry(NumberedNames& names, const zelXMLNode& element, const wchar_t* numberAttribute)
{
    return names.Add(element.getAttribute(L"name"), element.getAttributeInt(numberAttribute, -1));
}

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

constinit base::SlimLock s_lock; // guards the vocabulary in use, which is null until one is loaded
constinit std::shared_ptr<const ActionVocabulary> s_vocabulary;

// A share of the vocabulary in use: loading another one never destroys it while it is read.
std::shared_ptr<const ActionVocabulary> CurrentVocabulary() noexcept
{
    const std::scoped_lock lock(s_lock);
    return s_vocabulary;
}

void SetCurrentVocabulary(std::shared_ptr<const ActionVocabulary> vocabulary) noexcept
{
    const std::scoped_lock lock(s_lock);
    s_vocabulary.swap(vocabulary);
}

} // namespace

ActionType CProActionCollection::MapActionType(const wchar_t* name) noexcept
{
    const auto vocabulary = CurrentVocabulary();
    return vocabulary && name ? static_cast<ActionType>(vocabulary->Types().NumberOf(name))
                              : actionTypeNone;
}

ActionType CProActionCollection::MapActionType(const std::wstring& name) noexcept
{
    return MapActionType(name.c_str());
}

int CProActionCollection::MapAction(ActionType type, const wchar_t* name) noexcept
{
    const auto vocabulary = CurrentVocabulary();
    return vocabulary && name ? vocabulary->ActionsOf(type).NumberOf(name) : -1;
}

int CProActionCollection::MapAction(ActionType type, const std::wstring& name) noexcept
{
    return MapAction(type, name.c_str());
}

namespace pro_actions {

bool LoadVocabulary(const std::wstring& path) noexcept
{
    try {
        zelXMLFile file;
        auto vocabulary = std::make_shared<ActionVocabulary>();
        if (!file.open(path, true) || !vocabulary->Read(file.getRootElement())) return false;
        SetCurrentVocabulary(std::move(vocabulary));
        return true;
    } catch (const std::exception&) { // out of memory
        return false;
    }
}

void ClearVocabulary() noexcept
{
    SetCurrentVocabulary(nullptr);
}

std::wstring ActionTypeName(ActionType type)
{
    const auto vocabulary = CurrentVocabulary();
    return vocabulary ? vocabulary->Types().NameOf(type) : std::wstring();
}

std::wstring ActionName(ActionType type, int action)
{
    const auto vocabulary = CurrentVocabulary();
    return vocabulary ? vocabulary->ActionsOf(type).NameOf(action) : std::wstring();
}

} // namespace pro_actions
