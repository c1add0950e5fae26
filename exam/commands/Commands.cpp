#include "commands/Commands.h"

#include <pro_actions/CProActionCollection.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <vector>

namespace exam {

namespace {

struct MenuPart
{
    Menu menu;
    std::span<const Command> (*commands)();
};

constexpr MenuPart parts[] = {{Menu::image, ImageCommands},
                              {Menu::measure, MeasureCommands},
                              {Menu::exam, ExamCommands},
                              {Menu::view, ViewCommands},
                              {Menu::help, HelpCommands}};

std::vector<Command> WholeTable()
{
    std::vector<Command> table;
    for (const MenuPart& part : parts)
        for (Command command : part.commands()) {
            if (command.text.name) command.menu = part.menu;
            table.push_back(command);
        }
    return table;
}

// The name of a key by itself.
CString NameOfKey(UINT key)
{
    switch (key) {
    case VK_SPACE: return GetStr("exam.key.space");
    case VK_RETURN: return GetStr("exam.key.enter");
    case VK_DELETE: return GetStr("exam.key.delete");
    case VK_PRIOR: return GetStr("exam.key.pageup");
    case VK_NEXT: return GetStr("exam.key.pagedown");
    case VK_LEFT: return GetStr("exam.key.left");
    case VK_RIGHT: return GetStr("exam.key.right");
    case VK_UP: return GetStr("exam.key.up");
    case VK_DOWN: return GetStr("exam.key.down");
    case VK_BACK: return GetStr("exam.key.back");
    case VK_TAB: return L"Tab";
    case VK_ESCAPE: return L"Esc";
    case VK_HOME: return GetStr("exam.key.home");
    case VK_END: return GetStr("exam.key.end");
    case VK_OEM_COMMA: return L",";
    case VK_OEM_PERIOD: return L".";
    case VK_OEM_PLUS: return L"+";
    case VK_OEM_MINUS: return L"\u2212";
    default: break;
    }
    CString name;
    if (key >= VK_F1 && key <= VK_F12)
        name.Format(L"F%u", key - VK_F1 + 1);
    else
        name.Format(L"%c", static_cast<wchar_t>(key));
    return name;
}

} // namespace

std::span<const Command> Commands()
{
    static const std::vector<Command> table = WholeTable();
    return table;
}

ActionStateInfo StateOf(const Command& command, int param)
{
    const ActionType type = CProActionCollection::MapActionType(command.action.type);
    return {type, CProActionCollection::MapAction(type, command.action.name), param};
}

const Command* CommandOfKey(UINT key, bool withControl)
{
    const auto found = std::find_if(Commands().begin(), Commands().end(), [&](const Command& each) {
        return key != 0 && each.key.code == key && each.key.withControl == withControl;
    });
    return found == Commands().end() ? nullptr : &*found;
}

const Command* CommandOfAction(const ActionInfo& action)
{
    const auto found =
        std::find_if(Commands().begin(), Commands().end(), [&action](const Command& each) {
            if (!each.action.type) return false;
            const ActionStateInfo state = StateOf(each, 0);
            return state.type == action.type && state.action == action.action;
        });
    return found == Commands().end() ? nullptr : &*found;
}

bool IsOn(const Command& command, const ExamState& state)
{
    return command.value && !command.isNumber && command.value(state, command.key.param) != 0;
}

bool IsPossible(const Command& command, const ExamState& state)
{
    return command.carryOut && (!command.isPossible || command.isPossible(state));
}

CString KeyName(const Command& command)
{
    const CString key = NameOfKey(command.key.code);
    return command.key.withControl ? GetStr("exam.key.control", key.GetString()) : key;
}

CString TipOf(const Command& command)
{
    const CString tip = GetStr(command.text.tip);
    return GetStr("exam.tip.key", KeyName(command).GetString(), tip.GetString());
}

std::wstring KeyHelp()
{
    constexpr std::size_t width = 18; // the longest name has fourteen letters
    std::wstring help;
    for (const Command& command : Commands()) {
        if (command.key.code == 0) continue;
        std::wstring line = L"  " + std::wstring(KeyName(command));
        line.resize(width, L' ');
        help += line + GetStr(command.text.tip).GetString() + L"\n";
    }
    return help;
}

} // namespace exam
