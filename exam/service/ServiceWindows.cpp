#include "service/ServiceWindows.h"

#include "service/ModuleVersions.h"

#include <Utils_Statics/GetStr.h>

#include <commctrl.h>

#include <iterator>

namespace exam {

namespace {

const CSize aboutSize(640, 480);
// The places where the columns of version and description begin, in dialog units.
constexpr int tabStops[] = {110, 190};

const CSize progressSize(420, 110);
constexpr int margin = 16;
constexpr int lineHeight = 20;

// The place in the middle of a window.
CRect Centred(const CWnd& owner, CSize size)
{
    CRect rect;
    owner.GetWindowRect(&rect);
    const CPoint middle = rect.CenterPoint();
    return {CPoint(middle.x - size.cx / 2, middle.y - size.cy / 2), size};
}

HWND AddControl(const CWnd& window, const wchar_t* className, DWORD style, const CRect& place)
{
    const HWND control = CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style,
                                         place.left, place.top, place.Width(), place.Height(),
                                         window.GetSafeHwnd(), nullptr, nullptr, nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                 0);
    return control;
}

} // namespace

BEGIN_MESSAGE_MAP(AboutBox, CWnd)
    ON_WM_CLOSE()
END_MESSAGE_MAP()

void AboutBox::Toggle(CWnd& owner)
{
    if (IsShown()) {
        ShowWindow(SW_HIDE);
        return;
    }
    if (!GetSafeHwnd() && !Open(owner)) return;
    SetWindowText(GetStr("exam.about.title"));
    List();
    ShowWindow(SW_SHOWNOACTIVATE);
}

bool AboutBox::Open(CWnd& owner)
{
    if (!CreateEx(WS_EX_NOACTIVATE, nullptr, L"", WS_POPUP | WS_CAPTION | WS_SYSMENU,
                  Centred(owner, aboutSize), &owner, 0))
        return false;
    CRect client;
    GetClientRect(&client);
    m_list = AddControl(*this, L"LISTBOX",
                        WS_VSCROLL | LBS_NOSEL | LBS_USETABSTOPS | LBS_NOINTEGRALHEIGHT, client);
    ::SendMessageW(m_list, LB_SETTABSTOPS, std::size(tabStops),
                   reinterpret_cast<LPARAM>(std::data(tabStops)));
    return m_list != nullptr;
}

void AboutBox::List()
{
    ::SendMessageW(m_list, LB_RESETCONTENT, 0, 0);
    for (const LoadedModule& module : LoadedModules()) {
        const std::wstring line = module.name + L"\t" + module.version + L"\t" + module.description;
        ::SendMessageW(m_list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    }
}

void AboutBox::OnClose()
{
    ShowWindow(SW_HIDE);
}

bool ProgressWindow::Open(CWnd& owner, const CString& title)
{
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    const CString plainClass =
        AfxRegisterWndClass(0, nullptr, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1), nullptr);
    if (!CreateEx(WS_EX_NOACTIVATE, plainClass, title, WS_POPUP | WS_CAPTION,
                  Centred(owner, progressSize), &owner, 0))
        return false;
    CRect line;
    GetClientRect(&line);
    line.DeflateRect(margin, margin / 2);
    line.bottom = line.top + lineHeight;
    m_name = AddControl(*this, L"STATIC", SS_LEFT | SS_NOPREFIX | SS_PATHELLIPSIS, line);
    line.OffsetRect(0, lineHeight + margin / 4);
    m_bar = AddControl(*this, PROGRESS_CLASSW, PBS_SMOOTH, line);
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
