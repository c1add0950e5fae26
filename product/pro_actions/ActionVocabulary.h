#pragma once

#include <pro_actions/ActionType.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

class zelXMLNode;

namespace pro_actions {

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

// A share of the vocabulary in use, so that loading another one never destroys it while it is read.
// Null until a vocabulary is loaded.
std::shared_ptr<const ActionVocabulary> CurrentVocabulary() noexcept;

void SetCurrentVocabulary(std::shared_ptr<const ActionVocabulary> vocabulary) noexcept;

} // namespace pro_actions
