#include "service/ProgressWindow.h"

#include <commctrl.h>

namespace exam {

namespace {

constexpr int width = 420;
constexpr int height = 110;
constexpr int margin = 16;
constexpr int lineHeight = 20;

HWND Child(HWND parent, const wchar_t* className, DWORD style, const CRect& rect)
{
    return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, rect.left, rect.top,
                           rect.Width(), rect.Height(), parent, nullptr, nullptr, nullptr);
}

} // namespace

bool ProgressWindow::Open(CWnd& owner, const CString& title)
{
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    CRect rect;
    owner.GetWindowRect(&rect);
    const CPoint middle = rect.CenterPoint();
    const CRect frame(middle.x - width / 2, middle.y - height / 2, middle.x + width / 2,
                      middle.y + height / 2);
    const CString plainClass =
        AfxRegisterWndClass(0, nullptr, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1), nullptr);
    if (!CreateEx(WS_EX_NOACTIVATE, plainClass, title, WS_POPUP | WS_CAPTION, frame, &owner, 0))
        return false;
    CRect line;
    GetClientRect(&line);
    line.DeflateRect(margin, margin / 2);
    line.bottom = line.top + lineHeight;
    m_name = Child(GetSafeHwnd(), L"STATIC", SS_LEFT | SS_NOPREFIX | SS_PATHELLIPSIS, line);
    line.OffsetRect(0, lineHeight + margin / 4);
    m_bar = Child(GetSafeHwnd(), PROGRESS_CLASSW, PBS_SMOOTH, line);
    ::SendMessageW(m_name, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                   0);
    ShowWindow(SW_SHOWNOACTIVATE);
    return m_name && m_bar;
}

void ProgressWindow::Step(std::size_t done, std::size_t all, const std::wstring& name)
{
    ::SetWindowTextW(m_name, name.c_str());
    ::SendMessageW(m_bar, PBM_SETRANGE32, 0, static_cast<LPARAM>(all));
    ::SendMessageW(m_bar, PBM_SETPOS, done, 0);
    RedrawWindow(nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE | RDW_ALLCHILDREN);
}

} // namespace exam
