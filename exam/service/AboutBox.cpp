#include "service/AboutBox.h"

#include "service/ModuleVersions.h"

#include <Utils_Statics/GetStr.h>

#include <iterator>

namespace exam {

namespace {

constexpr int width = 640;
constexpr int height = 480;
// The places where the columns of version and description begin, in dialog units.
constexpr int tabStops[] = {110, 190};

CRect Centred(CWnd& owner)
{
    CRect rect;
    owner.GetWindowRect(&rect);
    const CPoint middle = rect.CenterPoint();
    return {middle.x - width / 2, middle.y - height / 2, middle.x + width / 2,
            middle.y + height / 2};
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
                  Centred(owner), &owner, 0))
        return false;
    CRect client;
    GetClientRect(&client);
    constexpr DWORD style =
        WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOSEL | LBS_USETABSTOPS | LBS_NOINTEGRALHEIGHT;
    m_list = CreateWindowExW(0, L"LISTBOX", L"", style, 0, 0, client.Width(), client.Height(),
                             GetSafeHwnd(), nullptr, nullptr, nullptr);
    ::SendMessageW(m_list, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                   0);
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

} // namespace exam
