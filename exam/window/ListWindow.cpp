#include "window/ListWindow.h"

#include "base/DarkControls.h"
#include "base/Dpi.h"
#include "base/Palette.h"

#include <Utils_Statics/GetStr.h>

#include <commctrl.h>

#include <algorithm>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr CSize wholeSize(900, 640);

} // namespace

BEGIN_MESSAGE_MAP(ListWindow, CWnd)
    ON_WM_SIZE()
END_MESSAGE_MAP()

ListWindow::~ListWindow()
{
    if (GetSafeHwnd()) DestroyWindow();
}

bool ListWindow::Toggle(CWnd& owner)
{
    if (!IsShown()) return Open(owner);
    DestroyWindow();
    return true;
}

bool ListWindow::Open(CWnd& owner)
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
    if (!CreateEx(WS_EX_TOOLWINDOW, nullptr, GetStr(m_titleKey),
                  WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN,
                  CRect(corner, size), &owner, 0))
        return false;
    m_list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | m_style, 0, 0, 0, 0,
                             GetSafeHwnd(), nullptr, nullptr, nullptr);
    if (!m_list) return false;
    DarkenFrame(GetSafeHwnd());
    DarkenScrollBars(m_list);
    ::SendMessageW(m_list, WM_SETFONT, reinterpret_cast<WPARAM>(m_font->GetSafeHandle()), FALSE);
    const auto colour = [&](UINT message, COLORREF value) {
        ::SendMessageW(m_list, message, 0, static_cast<LPARAM>(value));
    };
    colour(LVM_SETBKCOLOR, palette::panel);
    colour(LVM_SETTEXTBKCOLOR, palette::panel);
    colour(LVM_SETTEXTCOLOR, palette::text);
    CRect client;
    GetClientRect(&client);
    OnSize(0, client.Width(), client.Height());
    Fill();
    ShowWindow(SW_SHOW);
    ::SetFocus(m_list);
    return true;
}

void ListWindow::FollowLanguage()
{
    if (!IsShown()) return;
    SetWindowText(GetStr(m_titleKey));
    Resized();
}

void ListWindow::OnSize(UINT, int width, int height)
{
    if (!m_list) return;
    ::MoveWindow(m_list, 0, 0, width, height, TRUE);
    Resized();
}

BOOL ListWindow::PreTranslateMessage(MSG* message)
{
    if (message->message != WM_KEYDOWN) return FALSE;
    if (message->wParam != VK_ESCAPE && message->wParam != m_key) return FALSE;
    DestroyWindow();
    return TRUE;
}

} // namespace exam
