#include "window/Menus.h"

#include "service/RecentFiles.h"
#include "window/MenuLook.h"

#include <Utils_Statics/GetStr.h>

#include <shlwapi.h>

#include <algorithm>
#include <cwchar>
#include <cwctype>
#include <iterator>
#include <span>
#include <vector>

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
constexpr ULONG_PTR firstRecentData = 30000;

constexpr UINT firstRecent = 3000;
constexpr ULONG_PTR recentMenu = 1; // the data of a menu of recent files
constexpr UINT longestName = 60;    // characters of a path in a menu

// Addresses of texts lie above all of them.
constexpr ULONG_PTR leastAddress = 0x10000;

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
        const HMENU below = command.opensRecent ? MakeRecentMenu().release() : nullptr;
        AddItem(to, static_cast<UINT>(firstItem + i), below, text, i);
    }
}

// A number to choose it by, and its path, shortened in the middle.
CString TextOfRecent(std::size_t index)
{
    const std::vector<std::wstring> recent = RecentFiles();
    if (index >= recent.size()) return GetStr("exam.image.norecent");
    wchar_t path[longestName] = {};
    PathCompactPathExW(path, recent[index].c_str(), longestName, 0);
    CString text;
    text.Format(L"&%d  ", static_cast<int>(index + 1));
    for (const wchar_t letter : std::wstring(path))
        text += letter == L'&' ? L"&&" : std::wstring(1, letter).c_str();
    return text;
}

// Puts the present files into the menu.
void FillRecent(HMENU menu)
{
    while (DeleteMenu(menu, 0, MF_BYPOSITION)) {
    }
    const std::size_t count = RecentFiles().size();
    for (std::size_t i = 0; i < std::max<std::size_t>(1, count); ++i)
        AddItem(menu, static_cast<UINT>(firstRecent + i), nullptr, TextOfRecent(i),
                firstRecentData + i);
    if (count == 0) EnableMenuItem(menu, 0, MF_BYPOSITION | MF_GRAYED);
}

bool IsOfRecent(HMENU menu)
{
    MENUINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = MIM_MENUDATA;
    return GetMenuInfo(menu, &info) && info.dwMenuData == recentMenu;
}

} // namespace

MenuText TextOfMenu(ULONG_PTR data)
{
    if (data >= leastAddress) return {.name = reinterpret_cast<const wchar_t*>(data)};
    if (data == lineData) return {.isLine = true};
    if (data >= firstRecentData) return {.name = TextOfRecent(data - firstRecentData)};
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

MenuHandle MakeRecentMenu()
{
    MenuHandle popup(CreatePopupMenu());
    MENUINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = MIM_MENUDATA;
    info.dwMenuData = recentMenu;
    SetMenuInfo(popup.get(), &info);
    FillRecent(popup.get());
    SetBackground(popup.get());
    return popup;
}

std::wstring RecentFileOfItem(UINT id)
{
    const std::vector<std::wstring> recent = RecentFiles();
    return id >= firstRecent && id - firstRecent < recent.size() ? recent[id - firstRecent] : L"";
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

MenuHandle MakeTextMenu(const std::vector<CString>& texts)
{
    MenuHandle popup(CreatePopupMenu());
    for (std::size_t i = 0; i < texts.size(); ++i)
        AddItem(popup.get(), static_cast<UINT>(i + 1), nullptr, texts[i],
                reinterpret_cast<ULONG_PTR>(texts[i].GetString()));
    SetBackground(popup.get());
    return popup;
}

void ShowStates(HMENU menu, const ExamState& state)
{
    if (IsOfRecent(menu)) return FillRecent(menu);
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
