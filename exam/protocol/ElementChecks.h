#pragma once

#include "protocol/Findings.h"

#include <pro_actions/ActionStateInfo.h>
#include <zel_xml/zelXMLNode.h>

#include <initializer_list>
#include <map>
#include <optional>
#include <string>

namespace exam {

/// Checks for elements that several protocol files share. Each function adds a finding for
/// everything that its reader in the library ignores.

/// An element's name in angle brackets.
std::wstring Tag(const zelXMLNode& element);

/// Reports attributes that nobody reads.
void CheckAttributes(const zelXMLNode& element, std::initializer_list<const wchar_t*> known,
                     Findings& findings);

/// Reports child elements that nobody reads: those of other names, and a second one of the same
/// name.
void CheckChildren(const zelXMLNode& element, std::initializer_list<const wchar_t*> known,
                   Findings& findings);

/// Reports an attribute whose text is no integer of 32 bits, or no real number.
void CheckInteger(const zelXMLNode& element, const wchar_t* attribute, Findings& findings);
void CheckReal(const zelXMLNode& element, const wchar_t* attribute, Findings& findings);

/// Reads the attributes "actionType", "action" and "actionParam" that name an action. Without an
/// action it adds a finding that begins with `consequence`.
std::optional<ActionStateInfo> CheckAction(const zelXMLNode& element,
                                           const std::wstring& consequence, Findings& findings);

/// Remembers the line on which each thing was found first.
template <class Key>
class FirstLines
{
public:
    /// Keeps the element's line. The result is the line of an earlier element with this key; none
    /// for the first.
    std::optional<int> Keep(const Key& key, int line)
    {
        const auto [entry, isNew] = m_lines.try_emplace(key, line);
        return isNew ? std::nullopt : std::optional(entry->second);
    }

private:
    std::map<Key, int> m_lines;
};

} // namespace exam
