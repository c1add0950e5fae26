#include "overlay/LoopDial.h"

#include "base/Palette.h"

#include <base/GdiHandles.h>

#include <cmath>
#include <numbers>

namespace exam {

namespace {

constexpr int diameter = 57;
constexpr int margin = 16; // from the image's corner
constexpr int ringWidth = 5;

// The point on the circle's edge at a fraction of a turn, clockwise from the top.
CPoint EdgePoint(const CRect& circle, double turn)
{
    const double angle = 2 * std::numbers::pi * turn;
    const double radius = circle.Width() / 2.0;
    return {static_cast<int>(std::lround(circle.CenterPoint().x + radius * std::sin(angle))),
            static_cast<int>(std::lround(circle.CenterPoint().y - radius * std::cos(angle)))};
}

void FillPie(CDC& dc, const CRect& circle, double turn)
{
    if (turn >= 1) {
        dc.Ellipse(&circle);
        return;
    }
    const CPoint end = EdgePoint(circle, turn);
    const CPoint start = EdgePoint(circle, 0);
    // The platform draws counterclockwise.
    Pie(dc, circle.left, circle.top, circle.right, circle.bottom, end.x, end.y, start.x, start.y);
}

} // namespace

CRect LoopDial::AreaOver(const CRect& image) const
{
    const CPoint corner(image.right - margin - diameter, image.top + margin);
    return {corner, CSize(diameter, diameter)};
}

void LoopDial::Draw(CDC* dc)
{
    const CRect area = Client();
    dc->FillSolidRect(&area, palette::header);
    if (m_session.IsEmpty()) return;
    CRect circle = area;
    circle.DeflateRect(ringWidth, ringWidth);
    CPen edge(PS_SOLID, 1, palette::label);
    CBrush ground(palette::panel);
    CBrush gone(palette::accent);
    const base::Selection edgeSelected(dc->GetSafeHdc(), edge.GetSafeHandle());
    {
        const base::Selection selected(dc->GetSafeHdc(), ground.GetSafeHandle());
        dc->Ellipse(&circle);
    }
    const base::Selection selected(dc->GetSafeHdc(), gone.GetSafeHandle());
    FillPie(*dc, circle, (m_session.Frame() + 1.0) / m_session.Cine().Frames());
}

void LoopDial::DrawMask(CDC* dc)
{
    const CRect area = Client();
    dc->FillSolidRect(&area, RGB(0, 0, 0));
    dc->SelectStockObject(WHITE_BRUSH);
    dc->SelectStockObject(WHITE_PEN);
    dc->Ellipse(&area);
}

} // namespace exam
