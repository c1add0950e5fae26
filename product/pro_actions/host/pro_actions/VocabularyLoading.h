#pragma once

#include <pro_actions/ActionType.h>
#include <pro_actions/export.h>

#include <string>

// The process-wide action vocabulary as its host fills it: the names of action types and, for each
// type, of its action codes, read from an XML file (docs/formats/actions.md). Any thread. Nothing
// throws but for want of memory for a returned text.
namespace pro_actions {

/// Replaces the vocabulary by the file's. False, and the present vocabulary stays, when the file
/// cannot be read, an entry lacks its name or its number, or a name or number occurs twice where it
/// has to be the only one.
PRO_ACTIONS_API bool LoadVocabulary(const std::wstring& path) noexcept;

/// Empties the vocabulary.
PRO_ACTIONS_API void ClearVocabulary() noexcept;

/// The names back; empty when the number has none.
PRO_ACTIONS_API std::wstring ActionTypeName(ActionType type);
PRO_ACTIONS_API std::wstring ActionName(ActionType type, int action);

} // namespace pro_actions
