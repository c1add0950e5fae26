#include "service/ServiceWindows.h"

#include "base/DarkControls.h"
#include "base/Dpi.h"
#include "base/Palette.h"
#include "base/Resources.h"
#include "service/ModuleVersions.h"

#include <base/GdiPlusSession.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <commctrl.h>

#include <iterator>

namespace exam {

namespace {

const CSize aboutSize(780, 500);
// The places where the columns of version and description begin, in dialog units.
constexpr int tabStops[] = {110, 190};

const CSize progressSize(420, 138);
const CSize buttonSize(110, 28);
constexpr int margin = 16;
constexpr int lineHeight = 20;

int Scaled(const CWnd& owner, int pixels)
{
    return MulDiv(pixels, DpiOf(owner.GetSafeHwnd()), USER_DEFAULT_SCREEN_DPI);
}

// The place in the middle of a window.
CRect Centred(const CWnd& owner, CSize size)
{
    CRect rect;
    owner.GetWindowRect(&rect);
    const CPoint middle = rect.CenterPoint();
    const CSize scaled(Scaled(owner, size.cx), Scaled(owner, size.cy));
    return {CPoint(middle.x - scaled.cx / 2, middle.y - scaled.cy / 2), scaled};
}

HWND AddControl(const CWnd& window, const wchar_t* className, DWORD style, const CRect& place,
                const TextFont& font)
{
    const HWND control = CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style,
                                         place.left, place.top, place.Width(), place.Height(),
                                         window.GetSafeHwnd(), nullptr, nullptr, nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font.GetSafeHandle()), 0);
    return control;
}

} // namespace

BEGIN_MESSAGE_MAP(AboutBox, CWnd)
    ON_WM_CLOSE()
    ON_MESSAGE(WM_CTLCOLORLISTBOX, OnControlColour)
    ON_MESSAGE(WM_CTLCOLORSTATIC, OnControlColour)
END_MESSAGE_MAP()

LRESULT AboutBox::OnControlColour(WPARAM dc, LPARAM)
{
    return DarkColours(dc, palette::panel);
}

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
    DarkenFrame(GetSafeHwnd());
    CRect client;
    GetClientRect(&client);
    m_font = std::make_unique<TextFont>(Scaled(owner, ScopedFont::textSize));
    AddPicture(client);
    m_list = AddControl(*this, L"LISTBOX",
                        WS_VSCROLL | LBS_NOSEL | LBS_USETABSTOPS | LBS_NOINTEGRALHEIGHT, client,
                        *m_font);
    DarkenScrollBars(m_list);
    ::SendMessageW(m_list, LB_SETTABSTOPS, std::size(tabStops),
                   reinterpret_cast<LPARAM>(std::data(tabStops)));
    return m_list != nullptr;
}

// Shows the program's picture at the top of an area, which keeps the rest.
void AboutBox::AddPicture(CRect& area)
{
    const base::GdiPlusSession session;
    Gdiplus::Bitmap* loaded = nullptr;
    if (!session || !LoadImageFromResource(&loaded, GetModuleHandleW(nullptr),
                                           MAKEINTRESOURCEW(IDR_EXAM_PICTURE), RT_RCDATA))
        return;
    const std::unique_ptr<Gdiplus::Bitmap> picture(loaded);
    const CSize size(Scaled(*this, static_cast<int>(picture->GetWidth())),
                     Scaled(*this, static_cast<int>(picture->GetHeight())));
    Gdiplus::Bitmap scaled(size.cx, size.cy, PixelFormat32bppARGB);
    Gdiplus::Graphics graphics(&scaled);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.DrawImage(picture.get(), 0, 0, size.cx, size.cy);
    Gdiplus::Color ground;
    ground.SetFromCOLORREF(palette::panel);
    HBITMAP bitmap = nullptr;
    scaled.GetHBITMAP(ground, &bitmap);
    m_picture.Attach(bitmap);
    CRect place = area;
    place.bottom = area.top += size.cy + Scaled(*this, 2 * margin);
    const HWND shown = AddControl(*this, L"STATIC", SS_BITMAP | SS_CENTERIMAGE, place, *m_font);
    ::SendMessageW(shown, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap));
}

void AboutBox::List()
{
    ::SendMessageW(m_list, LB_RESETCONTENT, 0, 0);
    const auto add = [this](const CString& line) {
        ::SendMessageW(m_list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.GetString()));
    };
    add(utilsExam::GetProductName() + L"\t" + utilsExam::GetProductVersion() + L"\t" +
        utilsExam::GetProductPublisher() + L", " +
        utilsExam::GetStringTableEntry(L"LegalCopyright"));
    add(L"");
    for (const LoadedModule& module : LoadedModules())
        add((module.name + L"\t" + module.version + L"\t" + module.description).c_str());
}

void AboutBox::OnClose()
{
    ShowWindow(SW_HIDE);
}

BEGIN_MESSAGE_MAP(ProgressWindow, CWnd)
    ON_WM_CLOSE()
    ON_WM_ERASEBKGND()
    ON_MESSAGE(WM_CTLCOLORSTATIC, OnControlColour)
END_MESSAGE_MAP()

BOOL ProgressWindow::OnEraseBkgnd(CDC* dc)
{
    CRect client;
    GetClientRect(&client);
    dc->FillSolidRect(&client, palette::panel);
    return TRUE;
}

LRESULT ProgressWindow::OnControlColour(WPARAM dc, LPARAM)
{
    return DarkColours(dc, palette::panel);
}

bool ProgressWindow::Open(CWnd& owner, const CString& title, bool canCancel)
{
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    if (!CreateEx(WS_EX_NOACTIVATE, nullptr, title, WS_POPUP | WS_CAPTION,
                  Centred(owner, progressSize), &owner, 0))
        return false;
    DarkenFrame(GetSafeHwnd());
    CRect line;
    GetClientRect(&line);
    m_font = std::make_unique<TextFont>(Scaled(owner, ScopedFont::textSize));
    const int around = Scaled(owner, margin);
    const int height = Scaled(owner, lineHeight);
    line.DeflateRect(around, around / 2);
    line.bottom = line.top + height;
    m_name = AddControl(*this, L"STATIC", SS_LEFT | SS_NOPREFIX | SS_PATHELLIPSIS, line, *m_font);
    line.OffsetRect(0, height + around / 4);
    m_bar = AddControl(*this, PROGRESS_CLASSW, PBS_SMOOTH, line, *m_font);
    Darken(m_bar);
    ShowWindow(SW_SHOW);
    return m_name && m_bar && (!canCancel || AddButton(line));
}

// The button stands below a line.
bool ProgressWindow::AddButton(const CRect& line)
{
    const CWnd& owner = *this;
    const CSize size(Scaled(owner, buttonSize.cx), Scaled(owner, buttonSize.cy));
    CRect area(CPoint(line.right - size.cx, line.bottom + Scaled(owner, margin) / 2), size);
    m_button = AddControl(*this, L"BUTTON", WS_TABSTOP | BS_DEFPUSHBUTTON, area, *m_font);
    ::SetWindowTextW(m_button, GetStr("exam.form.cancel"));
    SetWindowLongPtrW(m_button, GWLP_ID, IDCANCEL);
    Darken(m_button);
    ::SetFocus(m_button);
    return m_button != nullptr;
}

BOOL ProgressWindow::OnCommand(WPARAM wParam, LPARAM lParam)
{
    if (LOWORD(wParam) != IDCANCEL) return CWnd::OnCommand(wParam, lParam);
    m_isCancelled = true;
    ::EnableWindow(m_button, FALSE);
    return TRUE;
}

void ProgressWindow::Step(std::size_t done, std::size_t all, const std::wstring& name)
{
    ::SetWindowTextW(m_name, name.c_str());
    ::SendMessageW(m_bar, PBM_SETRANGE32, 0, static_cast<LPARAM>(all));
    ::SendMessageW(m_bar, PBM_SETPOS, done, 0);
    RedrawWindow(nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE | RDW_ALLCHILDREN);
}

} // namespace exam
