#include "overlay/HoverTip.h"

namespace exam {

namespace {

constexpr unsigned int shownFor = 6000; // milliseconds

} // namespace

void HoverTip::Follow(const CWnd& window, const CRect& area, const CString& title,
                      const CString& text)
{
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, window.GetSafeHwnd(), 0};
    TrackMouseEvent(&track);
    if (area == m_area) return;
    m_area = area;
    CPoint corner = area.BottomRight();
    window.ClientToScreen(&corner);
    m_provider.SetToolTip(text, title, corner, CToolTipProvider::iconInformation, shownFor);
}

void HoverTip::Leave()
{
    if (m_area.IsRectEmpty()) return;
    m_area = CRect();
    m_provider.CancelToolTip();
}

} // namespace exam
