#include "pro_actions/CProActionCollection.h"

#include "ActionVocabulary.h"

using pro_actions::CurrentVocabulary;

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
