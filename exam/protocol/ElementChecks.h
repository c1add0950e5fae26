#pragma once

#include "protocol/Findings.h"

#include <pro_actions/ActionStateInfo.h>
#include <zel_xml/zelXMLNode.h>

#include <initializer_list>
#include <map>
#include <optional>
#include <string>

namespace exam {

/// What the elements of several protocol files have in common. Each function adds a finding for
/// everything that its reader in the library ignores.

/// An element's name in angle brackets.
std::wstring Tag(const zelXMLNode& element);

/// Attributes that nobody reads.
void CheckAttributes(const zelXMLNode& element, std::initializer_list<const wchar_t*> known,
                     Findings& findings);

/// Child elements that nobody reads: of other names than these, or a second one of a name.
void CheckChildren(const zelXMLNode& element, std::initializer_list<const wchar_t*> known,
                   Findings& findings);

/// An attribute whose text is no integer of 32 bits, or no real number.
void CheckInteger(const zelXMLNode& element, const wchar_t* attribute, Findings& findings);
void CheckReal(const zelXMLNode& element, const wchar_t* attribute, Findings& findings);

/// The attributes "actionType", "action" and "actionParam" that name an action. Without an action
/// there is a finding that begins with `consequence`.
std::optional<ActionStateInfo> CheckAction(const zelXMLNode& element,
                                           const std::wstring& consequence, Findings& findings);

/// The lines on which things were found first.
template <class Key>
class FirstLines
{
public:
    /// Keeps the element's line. The line of an earlier element with this key; none for the first.
    std::optional<int> Keep(const Key& key, int line)
    {
        const auto [entry, isNew] = m_lines.try_emplace(key, line);
        return isNew ? std::nullopt : std::optional(entry->second);
    }

private:
    std::map<Key, int> m_lines;
};

} // namespace exam
