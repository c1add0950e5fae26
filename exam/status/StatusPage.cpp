#include "status/StatusPage.h"

#include "base/DarkControls.h"
#include "base/Dpi.h"
#include "base/Painting.h"
#include "base/Palette.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <utility>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int width = 600;
constexpr int titleHeight = 40;
constexpr int headingHeight = 34;
constexpr int lineHeight = 28;
constexpr int margin = 20;
constexpr int columnWidth = (width - 2 * margin) / 2;
constexpr int firstId = 100;
constexpr int allSides = 15;

void DrawLine(CDC& dc, CRect box, const CString& text, COLORREF colour)
{
    dc.SetTextColor(colour);
    dc.DrawText(text, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
}

} // namespace

BEGIN_MESSAGE_MAP(StatusPage, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_KEYDOWN()
    ON_MESSAGE(WM_CTLCOLORSTATIC, OnControlColour)
END_MESSAGE_MAP()

StatusPage::StatusPage(const char* title, PageColumn left, PageColumn right)
    : m_title(title), m_left(std::move(left)), m_right(std::move(right))
{
}

StatusPage::~StatusPage()
{
    if (GetSafeHwnd()) DestroyWindow();
}

void StatusPage::Open(CWnd& owner)
{
    if (GetSafeHwnd()) return ShowStates();
    m_dpi = DpiOf(owner.GetSafeHwnd());
    m_font = std::make_unique<TextFont>(Scaled(ScopedFont::textSize));
    const auto lines = static_cast<int>(std::max(m_left.switches.size(), m_right.switches.size()));
    const CSize size(Scaled(width),
                     Scaled(titleHeight + headingHeight + lines * lineHeight + margin));
    const CPoint screen = utilsExam::CalculateDialogRect().TopLeft();
    const CPoint place(screen.x + (utilsExam::GetMainScreenSize().cx - size.cx) / 2,
                       screen.y + (utilsExam::GetMainScreenSize().cy - size.cy) / 2);
    const CString windowClass = AfxRegisterWndClass(0, LoadCursor(nullptr, IDC_ARROW));
    if (!CreateEx(0, windowClass, GetStr(m_title), WS_POPUP | WS_CLIPCHILDREN, CRect(place, size),
                  &owner, 0))
        return;
    if (!CreateSwitches()) {
        DestroyWindow();
        return;
    }
    utilsExam::ChangeDialogFont(this, m_font.get(), FALSE);
    ShowStates();
    ShowWindow(SW_SHOW);
}

int StatusPage::Scaled(int pixels) const
{
    return MulDiv(pixels, m_dpi, USER_DEFAULT_SCREEN_DPI);
}

// The upper left corner of a line in a column.
CPoint StatusPage::Place(int column, int line) const
{
    return {Scaled(margin + column * columnWidth),
            Scaled(titleHeight + headingHeight + line * lineHeight)};
}

void StatusPage::FollowLanguage()
{
    if (!GetSafeHwnd()) return;
    SetWindowText(GetStr(m_title));
    const auto count = static_cast<int>(m_left.switches.size() + m_right.switches.size());
    for (int index = 0; index < count; ++index)
        SetDlgItemTextW(GetSafeHwnd(), firstId + index, GetStr(Switch(index).text));
    Invalidate();
}

// False when the platform refuses a switch.
bool StatusPage::CreateSwitches()
{
    const auto shown = static_cast<int>(m_left.switches.size());
    const auto simulated = static_cast<int>(m_right.switches.size());
    bool created = true;
    for (int line = 0; line < shown; ++line)
        created = CreateSwitch(line, Place(0, line)) && created;
    for (int line = 0; line < simulated; ++line)
        created = CreateSwitch(shown + line, Place(1, line)) && created;
    return created;
}

bool StatusPage::CreateSwitch(int index, const CPoint& place)
{
    const HWND box = ::CreateWindowEx(
        0, L"BUTTON", GetStr(Switch(index).text),
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, place.x, place.y,
        Scaled(columnWidth - margin), Scaled(lineHeight), GetSafeHwnd(),
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(firstId + index)), nullptr, nullptr);
    if (box) Darken(box);
    return box != nullptr;
}

const PageSwitch& StatusPage::Switch(int index) const
{
    const auto place = static_cast<std::size_t>(index);
    return place < m_left.switches.size() ? m_left.switches.at(place)
                                          : m_right.switches.at(place - m_left.switches.size());
}

// One switch may change what another one shows.
void StatusPage::ShowStates()
{
    const auto count = static_cast<int>(m_left.switches.size() + m_right.switches.size());
    for (int index = 0; index < count; ++index)
        CheckDlgButton(GetSafeHwnd(), firstId + index,
                       Switch(index).isOn() ? BST_CHECKED : BST_UNCHECKED);
}

void StatusPage::Click(int index)
{
    ::SendMessage(::GetDlgItem(GetSafeHwnd(), firstId + index), BM_CLICK, 0, 0);
}

BOOL StatusPage::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const int id = LOWORD(wParam);
    if (HIWORD(wParam) != BN_CLICKED || lParam == 0) return CWnd::OnCommand(wParam, lParam);
    Switch(id - firstId).set(IsDlgButtonChecked(GetSafeHwnd(), id) == BST_CHECKED);
    ShowStates();
    return TRUE;
}

// Escape closes the page even while a check box has the focus.
BOOL StatusPage::PreTranslateMessage(MSG* message)
{
    if (message->message != WM_KEYDOWN || message->wParam != VK_ESCAPE)
        return IsDialogMessage(GetSafeHwnd(), message);
    DestroyWindow();
    return TRUE;
}

void StatusPage::OnKeyDown(UINT key, UINT, UINT)
{
    if (key == VK_ESCAPE) DestroyWindow();
}

BOOL StatusPage::OnEraseBkgnd(CDC*)
{
    return TRUE; // OnPaint covers everything; erasing first would flicker
}

void StatusPage::OnPaint()
{
    CPaintDC dc(this);
    Draw(dc);
}

void StatusPage::Draw(CDC& dc)
{
    CRect area;
    GetClientRect(&area);
    dc.FillSolidRect(&area, palette::panel);
    CRect title = area;
    title.bottom = title.top + Scaled(titleHeight);
    utilsExam::DrawGradient(&dc, title, palette::line, palette::header);
    utilsExam::DrawBorder(&dc, area, allSides, palette::line, palette::label);
    dc.SetBkMode(TRANSPARENT);
    const ScopedFont font(dc, Scaled(ScopedFont::textSize), FW_SEMIBOLD);
    title.left += Scaled(margin);
    DrawLine(dc, title, GetStr(m_title), palette::text);
    const CSize heading(Scaled(columnWidth), Scaled(headingHeight));
    const CSize above(0, heading.cy);
    DrawLine(dc, CRect(Place(0, 0) - above, heading), GetStr(m_left.heading), palette::label);
    DrawLine(dc, CRect(Place(1, 0) - above, heading), GetStr(m_right.heading), palette::label);
}

LRESULT StatusPage::OnControlColour(WPARAM dc, LPARAM)
{
    return DarkColours(dc, palette::panel);
}

} // namespace exam
