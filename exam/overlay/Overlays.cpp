#include "overlay/Overlays.h"

#include "base/Painting.h"
#include "base/Palette.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace exam {

namespace {

constexpr int margin = 16; // from the image's corner

// The dial.
constexpr int diameter = 57;
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

// The badge.
constexpr int width = 120;
constexpr int height = 26;
constexpr int marginTop = 84;

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
    if (!m_state.HasRecording()) return;
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
    FillPie(*dc, circle, (m_state.Frame() + 1.0) / m_state.Cine().Frames());
}

void LoopDial::DrawMask(CDC* dc)
{
    const CRect area = Client();
    dc->FillSolidRect(&area, RGB(0, 0, 0));
    dc->SelectStockObject(WHITE_BRUSH);
    dc->SelectStockObject(WHITE_PEN);
    dc->Ellipse(&area);
}

CRect DepthBadge::AreaOver(const CRect& image) const
{
    const CPoint corner(image.right - margin - width, image.top + marginTop);
    return {corner, CSize(width, height)};
}

void DepthBadge::Draw(CDC* dc)
{
    CRect area = Client();
    dc->FillSolidRect(&area, palette::header);
    CBrush edge(palette::line);
    dc->FrameRect(&area, &edge);
    if (!m_state.HasRecording()) return;
    const ScopedFont font(*dc, ScopedFont::textSize, FW_NORMAL);
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(palette::text);
    dc->DrawText(GetStr("exam.value.depth", m_state.View().Parameters().DepthMillimetres()), &area,
                 DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

Overlays::Overlays(const ExamState& state, std::vector<ToolButton> buttons)
    : m_dial(state), m_badge(state), m_tools(std::move(buttons))
{
}

bool Overlays::Open(CWnd& parent, const CRect& image)
{
    const std::array<Overlay*, 3> all = All();
    return std::all_of(all.begin(), all.end(),
                       [&](Overlay* overlay) { return overlay->Open(parent, image); });
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
