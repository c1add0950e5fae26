#pragma once

#include <pro_actions/ActionType.h>
#include <pro_actions/export.h>

#include <string>

/// The process-wide action vocabulary: the names of action types and, for each type, of its action
/// codes, read from an XML file (docs/formats/actions.md). It is empty until a file is loaded.
/// Every function may be called on any thread, and none throws.
class PRO_ACTIONS_API CProActionCollection
{
public:
    /// The type of that name (exact, case-sensitive); actionTypeNone when there is none, for null
    /// and for "".
    static ActionType MapActionType(const wchar_t* name) noexcept;
    static ActionType MapActionType(const std::wstring& name) noexcept;

    /// The code of that name within the type; -1 when there is none, for null and for "".
    static int MapAction(ActionType type, const wchar_t* name) noexcept;
    static int MapAction(ActionType type, const std::wstring& name) noexcept;
};
