#pragma once

#include "RandomDocument.h"

#include <pro_actions/ActionStateInfo.h>

#include <map>
#include <optional>

// Finds the numbers of TestVocabulary's names in the plain way.
inline int PlainType(const std::wstring& name)
{
    static const std::map<std::wstring, int> types{
        {L"Imaging", 1}, {L"Mode", 2}, {L"Empty", 0}, {L"Lamp", 9}};
    const auto found = types.find(name);
    return found == types.end() ? -1 : found->second;
}

inline int PlainAction(int type, const std::wstring& name)
{
    static const std::map<std::pair<int, std::wstring>, int> actions{
        {{1, L"Freeze"}, 0}, {{1, L"Depth"}, 7},  {{2, L"B"}, 0},
        {{2, L"M"}, 1},      {{2, L"Freeze"}, 3}, {{9, L"A"}, 0},
        {{9, L"B"}, 1},      {{9, L"C"}, 2},      {{9, L"D"}, 3}};
    const auto found = actions.find({type, name});
    return found == actions.end() ? -1 : found->second;
}

// The number of a text that RandomDocument uses for parameters.
inline int PlainParam(const std::wstring& text)
{
    static const std::map<std::wstring, int> params{{L"1", 1},
                                                    {L"-1", -1},
                                                    {L" 7 ", 7},
                                                    {L"+8", 8},
                                                    {L"2147483647", 2147483647},
                                                    {L"-2147483648", -2147483647 - 1}};
    const auto found = params.find(text);
    return found == params.end() ? 0 : found->second;
}

inline std::optional<ActionStateInfo> PlainState(const PlainElement& element)
{
    const int type = PlainType(element.Attribute("actionType"));
    const int action = PlainAction(type, element.Attribute("action"));
    if (type == -1 || action == -1) return std::nullopt;
    return ActionStateInfo{static_cast<ActionType>(type), action,
                           PlainParam(element.Attribute("actionParam"))};
}
