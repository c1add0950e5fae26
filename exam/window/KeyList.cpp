#include "window/KeyList.h"

#include "commands/Commands.h"

#include <Utils_Statics/GetStr.h>

#include <commctrl.h>

namespace exam {

namespace {

constexpr int columns = 3;

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

void KeyList::FollowLanguage()
{
    if (!IsShown()) return;
    SetWindowText(GetStr("exam.keys.title"));
    ::SendMessageW(List(), LVM_DELETEALLITEMS, 0, 0);
    AddCommands();
}

void KeyList::AddColumns()
{
    for (int column = 0; column < columns; ++column)
        AddColumn(List(), column);
    ::SendMessageW(List(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT,
                   LVS_EX_FULLROWSELECT);
}

void KeyList::AddCommands()
{
    int row = 0;
    for (const Command& command : Commands()) {
        if (command.key.code == 0) continue;
        SetCell(List(), row, 0, KeyName(command));
        SetCell(List(), row, 1, GetStr(command.text.name));
        SetCell(List(), row, 2, GetStr(command.text.tip));
        ++row;
    }
    for (WPARAM column = 0; column < columns; ++column)
        ::SendMessageW(List(), LVM_SETCOLUMNWIDTH, column, LVSCW_AUTOSIZE);
}

} // namespace exam
