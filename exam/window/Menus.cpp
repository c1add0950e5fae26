#include "window/Menus.h"

#include "window/MenuLook.h"

#include <Utils_Statics/GetStr.h>

#include <cwchar>
#include <cwctype>
#include <iterator>
#include <span>

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

// The data of the menus themselves lie above those of the commands, which are their indices.
constexpr ULONG_PTR firstMenuData = 10000;
constexpr ULONG_PTR lineData = 20000;

// The text is given too, for the keyboard and for those who read the screen aloud.
void AddItem(HMENU to, UINT id, HMENU below, CString text, ULONG_PTR data)
{
    MENUITEMINFOW item = {};
    item.cbSize = sizeof item;
    item.fMask = MIIM_FTYPE | MIIM_STRING | MIIM_ID | MIIM_DATA | MIIM_SUBMENU;
    item.fType = MFT_OWNERDRAW;
    item.wID = id;
    item.hSubMenu = below;
    item.dwTypeData = text.GetBuffer();
    item.dwItemData = data;
    InsertMenuItemW(to, static_cast<UINT>(GetMenuItemCount(to)), TRUE, &item);
}

void SetBackground(HMENU menu)
{
    MENUINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND | MIM_APPLYTOSUBMENUS;
    info.hbrBack = MenuBackground();
    SetMenuInfo(menu, &info);
}

void AddCommands(HMENU to, Menu menu)
{
    for (std::size_t i = 0; i < Commands().size(); ++i) {
        const Command& command = Commands()[i];
        if (command.menu != menu) continue;
        const CString text = GetStr(command.text.name) + L"\t" + KeyName(command);
        AddItem(to, static_cast<UINT>(firstItem + i), nullptr, text, i);
    }
}

} // namespace

MenuText TextOfMenu(ULONG_PTR data)
{
    if (data == lineData) return {.isLine = true};
    if (data >= firstMenuData)
        return {.name = GetStr(std::span(menuNames)[data - firstMenuData].nameKey),
                .isOnBar = true};
    const Command& command = Commands()[data];
    return {.name = GetStr(command.text.name), .key = KeyName(command), .picture = command.picture};
}

MenuHandle MakeMenuBar()
{
    MenuHandle bar(CreateMenu());
    for (std::size_t i = 0; i < std::size(menuNames); ++i) {
        const HMENU popup = CreatePopupMenu();
        AddCommands(popup, menuNames[i].menu);
        AddItem(bar.get(), 0, popup, GetStr(menuNames[i].nameKey), firstMenuData + i);
    }
    SetBackground(bar.get());
    return bar;
}

MenuHandle MakeContextMenu(std::initializer_list<Menu> menus)
{
    MenuHandle popup(CreatePopupMenu());
    for (const Menu menu : menus) {
        if (GetMenuItemCount(popup.get()) > 0)
            AppendMenuW(popup.get(), MF_SEPARATOR | MF_OWNERDRAW, 0,
                        reinterpret_cast<const wchar_t*>(lineData));
        AddCommands(popup.get(), menu);
    }
    SetBackground(popup.get());
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

std::optional<int> FindItemByLetter(HMENU menu, wchar_t letter)
{
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[200] = {};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 200, MF_BYPOSITION);
        const wchar_t* const underlined = std::wcschr(text, L'&');
        const wchar_t found = underlined ? underlined[1] : text[0];
        if (found != 0 && std::towupper(found) == std::towupper(letter)) return i;
    }
    return {};
}

const Command* CommandOfItem(UINT id)
{
    if (id < firstItem || id - firstItem >= Commands().size()) return nullptr;
    const Command& command = Commands()[id - firstItem];
    return command.menu == Menu::none ? nullptr : &command;
}

} // namespace exam
