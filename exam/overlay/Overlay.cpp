#include "overlay/Overlay.h"

#include <base/GdiHandles.h>

namespace exam {

BEGIN_MESSAGE_MAP(Overlay, CBufferedWnd)
    ON_MESSAGE(WM_NCHITTEST, OnNcHitTest)
END_MESSAGE_MAP()

bool Overlay::Open(CWnd& parent, const CRect& room)
{
    // Transparent, so that the parent paints below it even where it clips its children.
    return Create(WS_CHILD | WS_VISIBLE, WS_EX_TRANSPARENT, &parent, AreaIn(room), 0, CString()) !=
           0;
}

void Overlay::PlaceOver(const CRect& room)
{
    const CRect area = AreaIn(room);
    SetWindowPos(nullptr, area.left, area.top, area.Width(), area.Height(),
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void Overlay::Refresh()
{
    if (GetSafeHwnd()) Invalidate(FALSE);
}

void Overlay::DrawOnto(CDC& picture)
{
    CRect area;
    GetWindowRect(&area);
    GetParent()->ScreenToClient(&area);
    CDC mask;
    mask.CreateCompatibleDC(&picture);
    if (!IsRectMask()) {
        const base::Selection selected(mask, m_mask);
        DrawMask(&mask);
    }
    CDC buffer;
    buffer.CreateCompatibleDC(&picture);
    const base::Selection selected(buffer, m_buffer);
    Draw(&buffer);
    picture.SetViewportOrg(area.left, area.top);
    Paint(&picture, &buffer);
    picture.SetViewportOrg(0, 0);
}

LRESULT Overlay::OnNcHitTest(WPARAM, LPARAM)
{
    return TakesMouse() ? Default() : HTTRANSPARENT;
}

CRect Overlay::Client() const
{
    CRect client;
    GetClientRect(&client);
    return client;
}

} // namespace exam
