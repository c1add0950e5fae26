#include "overlay/Overlays.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "study/StudyTexts.h"

#include <base/GdiHandles.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace exam {

namespace {

// The part of the dial's diameter that its ring is wide.
constexpr int ringShare = 11;

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

void LoopDial::Draw(CDC* dc)
{
    const CRect area = Client();
    dc->FillSolidRect(&area, palette::header);
    if (!m_state.HasSource()) return;
    CRect circle = area;
    circle.DeflateRect(area.Width() / ringShare, area.Height() / ringShare);
    CPen edge(PS_SOLID, 1, palette::label);
    CBrush ground(palette::panel);
    CBrush gone(palette::accent);
    const base::Selection edgeSelected(dc->GetSafeHdc(), edge.GetSafeHandle());
    {
        const base::Selection selected(dc->GetSafeHdc(), ground.GetSafeHandle());
        dc->Ellipse(&circle);
    }
    const base::Selection selected(dc->GetSafeHdc(), gone.GetSafeHandle());
    FillPie(*dc, circle, 1.0 * m_state.FramePosition() / std::max(1, m_state.Source().Frames()));
}

void LoopDial::DrawMask(CDC* dc)
{
    const CRect area = Client();
    dc->FillSolidRect(&area, RGB(0, 0, 0));
    dc->SelectStockObject(WHITE_BRUSH);
    dc->SelectStockObject(WHITE_PEN);
    dc->Ellipse(&area);
}

void DepthBadge::Draw(CDC* dc)
{
    CRect area = Client();
    dc->FillSolidRect(&area, palette::header);
    CBrush edge(palette::line);
    dc->FrameRect(&area, &edge);
    if (!m_state.HasSource() || m_state.Source().IsPicture()) return;
    const ScopedFont font(*dc, m_state.Layout().Scaled(ScopedFont::textSize), FW_NORMAL);
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(palette::text);
    dc->DrawText(LengthText(m_state.View().Parameters().DepthMillimetres()).c_str(), &area,
                 DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

Overlays::Overlays(const ExamState& state, std::vector<ToolButton> buttons)
    : m_state(state), m_dial(state), m_badge(state), m_tools(std::move(buttons))
{
}

std::array<CRect, 3> Overlays::Rooms() const
{
    const ScreenLayout& layout = m_state.Layout();
    return {layout.dial, layout.badge, layout.tools};
}

bool Overlays::Open(CWnd& parent)
{
    bool isOpen = true;
    for (std::size_t i = 0; i < All().size(); ++i)
        isOpen = isOpen && All().at(i)->Open(parent, Rooms().at(i));
    return isOpen;
}

void Overlays::Place()
{
    for (std::size_t i = 0; i < All().size(); ++i)
        if (All().at(i)->GetSafeHwnd()) All().at(i)->PlaceOver(Rooms().at(i));
}

void Overlays::Refresh()
{
    for (Overlay* const overlay : All())
        overlay->Refresh();
}

void Overlays::DrawAll(CDC& picture)
{
    for (Overlay* const overlay : All())
        if (overlay->GetSafeHwnd()) overlay->DrawOnto(picture);
}

void Overlays::DrawRecorded(CDC& picture)
{
    for (Overlay* const overlay : All())
        if (overlay->GetSafeHwnd() && overlay->CanDrawOnAVI()) overlay->DrawOnto(picture);
}

} // namespace exam
