#pragma once

#include "commands/Commands.h"

#include <base/Owner.h>

#include <afxwin.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// Owns a menu that no window has.
struct MenuTraits
{
    using Handle = HMENU;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle menu) noexcept { DestroyMenu(menu); }
};
using MenuHandle = base::Owner<MenuTraits>;

/// The texts of an item, which the application draws.
struct MenuText
{
    CString name{};
    CString key{};
    bool isOnBar = false;
    const wchar_t* picture = nullptr; ///< file of its command's picture; null: none
    bool isLine = false;              ///< it only divides others, and has no text
};

/// The texts of the item with this data, in the current language.
MenuText TextOfMenu(ULONG_PTR data);

/// The menu bar in the current language, with an item for each command that stands in a menu.
MenuHandle MakeMenuBar();

/// A menu that holds the commands of some menus, for the right mouse button.
MenuHandle MakeContextMenu(std::initializer_list<Menu> menus);

/// A menu of texts, which outlive it; their items are numbered from 1 on.
MenuHandle MakeTextMenu(const std::vector<CString>& texts);

/// Ticks the items of a menu whose commands are on, and greys those that are not possible now.
void ShowStates(HMENU menu, const ExamState& state);

/// The place of the item whose name has that letter underlined, or begins with it.
std::optional<int> FindItemByLetter(HMENU menu, wchar_t letter);

/// The menu of the recent files. One on the bar is filled by ShowStates().
MenuHandle MakeRecentMenu();

/// The recent file of an item; empty for anything else.
std::wstring RecentFileOfItem(UINT id);

/// The command of an item; null for anything else.
const Command* CommandOfItem(UINT id);

} // namespace exam
