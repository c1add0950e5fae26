#pragma once

#include <pro_actions/ActionType.h>

#include <map>
#include <string>
#include <string_view>

class zelXMLNode;

namespace pro_actions {

// Names and numbers that stand for each other one to one.
class NumberedNames
{
public:
    // False, and nothing is added, when the name is empty, the number is -1 or either is already
    // there.
    bool Add(const std::wstring& name, int number);

    int NumberOf(std::wstring_view name) const noexcept; // -1 when unknown
    std::wstring NameOf(int number) const;               // empty when unknown

private:
    std::map<std::wstring, int, std::less<>> m_numbers;
    std::map<int, std::wstring> m_names;
};

// One vocabulary; never changed once it was read.
class ActionVocabulary
{
public:
    // Adds what the file's document element lists; false at the first entry that is no good.
    bool Read(const zelXMLNode& root);

    const NumberedNames& Types() const noexcept { return m_types; }
    const NumberedNames& ActionsOf(ActionType type) const noexcept;

private:
    bool ReadType(const zelXMLNode& element);

    NumberedNames m_types;
    std::map<int, NumberedNames> m_actions;
};

} // namespace pro_actions
