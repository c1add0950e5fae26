#pragma once

#include <pro_actions/ActionType.h>
#include <pro_actions/export.h>

#include <string>

// The host's side of the process-wide action vocabulary: the names of action types and, for each
// type, of its action codes, read from an XML file (docs/formats/actions.md). Any thread may call
// these functions. They throw only when memory is short for a returned text.
namespace pro_actions {

/// Replaces the vocabulary with the file's. False, with the vocabulary unchanged, when the file
/// cannot be read, an entry lacks its name or its number, or a name or number that must be unique
/// occurs twice.
PRO_ACTIONS_API bool LoadVocabulary(const std::wstring& path) noexcept;

/// Empties the vocabulary.
PRO_ACTIONS_API void ClearVocabulary() noexcept;

/// The names of numbers; empty for a number without one.
PRO_ACTIONS_API std::wstring ActionTypeName(ActionType type);
PRO_ACTIONS_API std::wstring ActionName(ActionType type, int action);

} // namespace pro_actions
