#include "window/Menus.h"

#include <Utils_Statics/GetStr.h>

#include <utility>

namespace exam {

namespace {

constexpr UINT firstItem = 1000;

struct MenuName
{
    Menu menu;
    const char* nameKey;
};

constexpr MenuName menuNames[] = {{Menu::exam, "exam.menu.exam"},
                                  {Menu::image, "exam.menu.image"},
                                  {Menu::measure, "exam.menu.measure"},
                                  {Menu::view, "exam.menu.view"},
                                  {Menu::help, "exam.menu.help"}};

void AddCommands(HMENU to, Menu menu)
{
    for (std::size_t i = 0; i < Commands().size(); ++i) {
        const Command& command = Commands()[i];
        if (command.menu != menu) continue;
        const CString text = GetStr(command.nameKey) + L"\t" + KeyName(command);
        AppendMenuW(to, MF_STRING, firstItem + i, text);
    }
}

} // namespace

MenuHandle MakeMenuBar()
{
    MenuHandle bar(CreateMenu());
    for (const MenuName& each : menuNames) {
        const HMENU popup = CreatePopupMenu();
        AddCommands(popup, each.menu);
        AppendMenuW(bar.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(popup), GetStr(each.nameKey));
    }
    return bar;
}

MenuHandle MakeContextMenu(std::initializer_list<Menu> menus)
{
    MenuHandle popup(CreatePopupMenu());
    for (const Menu menu : menus) {
        if (GetMenuItemCount(popup.get()) > 0) AppendMenuW(popup.get(), MF_SEPARATOR, 0, nullptr);
        AddCommands(popup.get(), menu);
    }
    return popup;
}

void ShowStates(HMENU menu, const ExamState& state)
{
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const auto place = static_cast<UINT>(i);
        const Command* const command = CommandOfItem(GetMenuItemID(menu, i));
        if (!command) continue;
        CheckMenuItem(menu, place,
                      MF_BYPOSITION | (IsOn(*command, state) ? MF_CHECKED : MF_UNCHECKED));
        EnableMenuItem(menu, place,
                       MF_BYPOSITION | (IsPossible(*command, state) ? MF_ENABLED : MF_GRAYED));
    }
}

const Command* CommandOfItem(UINT id)
{
    if (id < firstItem || id - firstItem >= Commands().size()) return nullptr;
    const Command& command = Commands()[id - firstItem];
    return command.menu == Menu::none ? nullptr : &command;
}

} // namespace exam
