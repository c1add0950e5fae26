#include "overlay/HoverTip.h"

#include <algorithm>
#include <cwchar>

namespace exam {

namespace {

constexpr unsigned int shownFor = 6000; // milliseconds

// The tip that waits for its time. There is one pointer, so at most one tip waits.
constinit HoverTip* s_waiting = nullptr;

// The search for the tip's window among those of this thread.
struct ShownTip
{
    CPoint anchor;
    CRect area;
};

// An enumeration callback that stops at the visible tip beside the anchor.
BOOL CALLBACK FindTip(HWND window, LPARAM parameter)
{
    constexpr int beside = 4; // pixels
    auto& tip = *reinterpret_cast<ShownTip*>(parameter);
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    CRect area;
    if (std::wcscmp(name, TOOLTIPS_CLASSW) != 0 || !IsWindowVisible(window) ||
        !GetWindowRect(window, &area))
        return TRUE;
    CRect around = area;
    around.InflateRect(beside, beside);
    if (!around.PtInRect(tip.anchor)) return TRUE;
    tip.area = area;
    return FALSE;
}

// The area of the tip that is shown at an anchor; empty when there is none.
CRect AreaOfTip(CPoint anchor)
{
    ShownTip tip{anchor, {}};
    EnumThreadWindows(GetCurrentThreadId(), FindTip, reinterpret_cast<LPARAM>(&tip));
    return tip.area;
}

} // namespace

HoverTip::~HoverTip()
{
    Leave();
}

void HoverTip::Follow(const CWnd& window, const CRect& area, const CString& title,
                      const CString& text)
{
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, window.GetSafeHwnd(), 0};
    TrackMouseEvent(&track);
    if (area == m_area) return;
    Leave();
    m_area = area;
    m_title = title;
    m_text = text;
    m_middle = area.CenterPoint();
    window.ClientToScreen(&m_middle);
    window.GetWindowRect(&m_window);
    s_waiting = this;
    m_timer = SetTimer(nullptr, 0, delay, OnTimer);
}

void HoverTip::Leave()
{
    Press();
    m_area = CRect();
}

void HoverTip::Press()
{
    if (m_timer != 0) KillTimer(nullptr, m_timer);
    m_timer = 0;
    if (s_waiting == this) s_waiting = nullptr;
    m_provider.CancelToolTip();
}

void CALLBACK HoverTip::OnTimer(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(nullptr, timer);
    if (!s_waiting || s_waiting->m_timer != timer) return;
    s_waiting->m_timer = 0;
    s_waiting->Show();
}

// The tip stands above a wide window and to the right of a high one. The platform decides on which
// side of the anchor it draws the balloon, so the anchor moves as far as the balloon reaches over
// the window.
void HoverTip::Show()
{
    const bool isWide = m_window.Width() > m_window.Height();
    CPoint anchor = isWide ? CPoint(m_middle.x, m_window.top) : CPoint(m_window.right, m_middle.y);
    const auto show = [&] {
        m_provider.SetToolTip(m_text, m_title, anchor, CToolTipProvider::iconInformation, shownFor);
    };
    show();
    const CRect shown = AreaOfTip(anchor);
    CRect covered;
    if (!covered.IntersectRect(&shown, &m_window)) return;
    if (isWide)
        anchor.y -= shown.bottom - m_window.top;
    else
        anchor.x += m_window.right - shown.left;
    show();
}

} // namespace exam
