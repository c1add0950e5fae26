#include "window/KeyList.h"

#include "base/Dpi.h"
#include "base/Palette.h"
#include "commands/Commands.h"

#include <Utils_Statics/GetStr.h>

#include <commctrl.h>

#include <algorithm>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr CSize wholeSize(760, 640);

constexpr int columns = 3;

void AddColumn(HWND list, int index, const char* titleKey)
{
    CString title = GetStr(titleKey);
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = title.GetBuffer();
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

BEGIN_MESSAGE_MAP(KeyList, CWnd)
    ON_WM_SIZE()
END_MESSAGE_MAP()

KeyList::~KeyList()
{
    if (GetSafeHwnd()) DestroyWindow();
}

bool KeyList::Toggle(CWnd& owner)
{
    if (!IsShown()) return Open(owner);
    DestroyWindow();
    return true;
}

bool KeyList::Open(CWnd& owner)
{
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    CRect over;
    owner.GetWindowRect(&over);
    const int dpi = DpiOf(owner.GetSafeHwnd());
    const CSize size(std::min<int>(over.Width(), MulDiv(wholeSize.cx, dpi, 96)),
                     std::min<int>(over.Height(), MulDiv(wholeSize.cy, dpi, 96)));
    const CPoint corner(over.CenterPoint().x - size.cx / 2, over.CenterPoint().y - size.cy / 2);
    m_font = std::make_unique<TextFont>(MulDiv(ScopedFont::textSize, dpi, 96));
    if (!CreateEx(WS_EX_TOOLWINDOW, nullptr, GetStr("exam.keys.title"),
                  WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN,
                  CRect(corner, size), &owner, 0))
        return false;
    m_list = CreateWindowExW(0, WC_LISTVIEWW, L"",
                             WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL |
                                 LVS_SHOWSELALWAYS | LVS_NOSORTHEADER,
                             0, 0, 0, 0, GetSafeHwnd(), nullptr, nullptr, nullptr);
    if (!m_list) return false;
    ::SendMessageW(m_list, WM_SETFONT, reinterpret_cast<WPARAM>(m_font->GetSafeHandle()), FALSE);
    CRect client;
    GetClientRect(&client);
    OnSize(0, client.Width(), client.Height());
    FollowLanguage();
    ShowWindow(SW_SHOW);
    ::SetFocus(m_list);
    return true;
}

void KeyList::FollowLanguage()
{
    if (!IsShown()) return;
    SetWindowText(GetStr("exam.keys.title"));
    ::SendMessageW(m_list, LVM_DELETEALLITEMS, 0, 0);
    for (int column = 0; column < columns; ++column)
        ::SendMessageW(m_list, LVM_DELETECOLUMN, 0, 0);
    AddColumns();
    AddCommands();
}

void KeyList::AddColumns()
{
    AddColumn(m_list, 0, "exam.keys.key");
    AddColumn(m_list, 1, "exam.keys.command");
    AddColumn(m_list, 2, "exam.keys.effect");
    const auto colour = [&](UINT message, COLORREF value) {
        ::SendMessageW(m_list, message, 0, static_cast<LPARAM>(value));
    };
    colour(LVM_SETBKCOLOR, palette::panel);
    colour(LVM_SETTEXTBKCOLOR, palette::panel);
    colour(LVM_SETTEXTCOLOR, palette::text);
    ::SendMessageW(m_list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT,
                   LVS_EX_FULLROWSELECT);
}

void KeyList::AddCommands()
{
    int row = 0;
    for (const Command& command : Commands()) {
        if (command.key.code == 0) continue;
        SetCell(m_list, row, 0, KeyName(command));
        SetCell(m_list, row, 1, GetStr(command.text.name));
        SetCell(m_list, row, 2, GetStr(command.text.tip));
        ++row;
    }
    for (WPARAM column = 0; column < columns; ++column)
        ::SendMessageW(m_list, LVM_SETCOLUMNWIDTH, column, LVSCW_AUTOSIZE);
}

void KeyList::OnSize(UINT, int width, int height)
{
    if (m_list) ::MoveWindow(m_list, 0, 0, width, height, TRUE);
}

BOOL KeyList::PreTranslateMessage(MSG* message)
{
    if (message->message != WM_KEYDOWN) return FALSE;
    if (message->wParam != VK_ESCAPE && message->wParam != VK_F1) return FALSE;
    DestroyWindow();
    return TRUE;
}

} // namespace exam
