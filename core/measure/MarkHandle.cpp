#include "measure/MarkHandle.h"

#include "measure/MarkBoard.h"

#include <Utils_Statics/MouseCapture.h>

namespace exam {

void MarkHandle::OnPrecisionMove(int dx, int dy)
{
    m_board.MovePrecisely(*this, dx, dy);
}

void MarkHandle::OnPrecisionAccept()
{
    MouseCapture::LockNext();
}

bool MarkHandle::OnMouseInput(unsigned int message, unsigned int, int x, int y)
{
    if (m_active < 0) return false;
    if (message == WM_MOUSEMOVE) {
        const CPoint at = CPoint(x, y) - CSize(m_board.m_origin);
        m_board.Move(m_number, m_active, Exactly(at));
        return true;
    }
    // In trackball style the button puts the point down and takes up the next one.
    if (message == WM_LBUTTONDOWN) {
        OnPrecisionAccept();
        return true;
    }
    return false;
}

void MarkHandle::OnReleaseMouse()
{
    m_board.Release();
}

void MarkHandle::GetAutoPoints(std::vector<POINT>& points)
{
    const Mark* const mark = m_board.Find(m_number);
    if (!mark) return;
    const PixelPoints pixels = m_board.PixelsOf(*mark);
    for (std::size_t i = 0; i < Grips(*mark); ++i)
        points.push_back(PixelAt(pixels[i]) + m_board.m_origin);
    if (mark->kind != MarkKind::flow && pixels.size() > 1)
        points.push_back(PixelAt(MiddleOf(pixels)) + m_board.m_origin);
    if (!m_board.OffersPoints(*mark)) return;
    for (const PixelPoint& pixel : pixels)
        points.push_back(PixelAt(pixel) + m_board.m_origin);
}

void MarkHandle::SetLock(int index)
{
    m_active = index;
    m_board.Take(*this, index);
}

} // namespace exam
