#include "window/KeyList.h"

#include "base/Dpi.h"
#include "commands/Commands.h"

#include <Utils_Statics/GetStr.h>

#include <commctrl.h>

#include <algorithm>
#include <sstream>
#include <string>

namespace exam {

namespace {

constexpr int columns = 3;
constexpr int cellMargin = 16; // pixels at 96 dpi, on both sides of a text together

CString NameOf(const Command& command)
{
    return GetStr(command.text.name);
}

void AddColumn(HWND list, int index)
{
    LVCOLUMNW column = {};
    column.mask = LVCF_SUBITEM;
    column.iSubItem = index;
    SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&column));
}

void SetCell(HWND list, int row, int column, CString text)
{
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.iSubItem = column;
    item.pszText = text.GetBuffer();
    SendMessageW(list, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                 reinterpret_cast<LPARAM>(&item));
}

} // namespace

KeyList::KeyList()
    : ListWindow("exam.keys.title",
                 LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOCOLUMNHEADER, VK_F1)
{
}

void KeyList::Fill()
{
    AddColumns();
    AddCommands();
}

void KeyList::Resized()
{
    const auto rows = ::SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0);
    if (rows > 0) AddCommands();
}

void KeyList::AddColumns()
{
    for (int column = 0; column < columns; ++column)
        AddColumn(List(), column);
    ::SendMessageW(List(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT,
                   LVS_EX_FULLROWSELECT);
}

int KeyList::WidthOf(const CString& text) const
{
    return static_cast<int>(::SendMessageW(List(), LVM_GETSTRINGWIDTHW, 0,
                                           reinterpret_cast<LPARAM>(text.GetString()))) +
           MulDiv(cellMargin, DpiOf(List()), USER_DEFAULT_SCREEN_DPI);
}

int KeyList::WidestOf(CString (*text)(const Command& command)) const
{
    int width = 0;
    for (const Command& command : Commands())
        if (command.key.code != 0) width = std::max(width, WidthOf(text(command)));
    return width;
}

// Breaks a text between words.
std::vector<CString> KeyList::RowsOf(const CString& text, int width) const
{
    std::vector<CString> rows(1);
    std::wistringstream words(text.GetString());
    for (std::wstring word; words >> word;) {
        const CString longer = rows.back() + (rows.back().IsEmpty() ? L"" : L" ") + word.c_str();
        if (rows.back().IsEmpty() || WidthOf(longer) <= width)
            rows.back() = longer;
        else
            rows.emplace_back(word.c_str());
    }
    return rows;
}

void KeyList::AddCommands()
{
    CRect client;
    ::GetClientRect(GetSafeHwnd(), &client);
    int widths[columns] = {WidestOf(KeyName), WidestOf(NameOf), 0};
    widths[2] = client.Width() - GetSystemMetrics(SM_CXVSCROLL) - widths[0] - widths[1];
    ::SendMessageW(List(), WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(List(), LVM_DELETEALLITEMS, 0, 0);
    for (WPARAM column = 0; column < columns; ++column)
        ::SendMessageW(List(), LVM_SETCOLUMNWIDTH, column, widths[column]);
    int row = 0;
    for (const Command& command : Commands()) {
        if (command.key.code == 0) continue;
        bool isFirst = true;
        for (const CString& text : RowsOf(GetStr(command.text.tip), widths[2])) {
            SetCell(List(), row, 0, isFirst ? KeyName(command) : CString());
            SetCell(List(), row, 1, isFirst ? NameOf(command) : CString());
            SetCell(List(), row++, 2, text);
            isFirst = false;
        }
    }
    ::SendMessageW(List(), WM_SETREDRAW, TRUE, 0);
}

} // namespace exam
