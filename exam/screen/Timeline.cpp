#include "screen/Timeline.h"

#include "base/Palette.h"

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int lineHeight = 4;
constexpr CSize markSize(10, 20);
constexpr CSize tickSize(2, 14);

// The line itself, whose ends are the middles of the mark's first and last place.
CRect LineOf(const ScreenLayout& layout)
{
    CRect line = layout.timeline;
    line.DeflateRect(layout.Scaled(markSize.cx), 0);
    line.top = line.CenterPoint().y - layout.Scaled(lineHeight) / 2;
    line.bottom = line.top + layout.Scaled(lineHeight);
    return line;
}

// The pixel of a frame, counted from the first one that there is.
int PlaceOnLine(const ExamState& state, const CRect& line, int place)
{
    const int steps = std::max(1, state.Source().Frames() - 1);
    return line.left + static_cast<int>(std::lround(1.0 * line.Width() * place / steps));
}

// Draws a rectangle round a pixel of the line.
void DrawAt(CDC& dc, const ScreenLayout& layout, CPoint middle, CSize size, COLORREF colour)
{
    const CSize scaled(layout.Scaled(size.cx), layout.Scaled(size.cy));
    const CPoint corner(middle.x - scaled.cx / 2, middle.y - scaled.cy / 2);
    dc.FillSolidRect(CRect(corner, scaled), colour);
}

} // namespace

void DrawTimeline(CDC& dc, const ExamState& state)
{
    const ScreenLayout& layout = state.Layout();
    if (layout.timeline.IsRectEmpty() || !state.HasSource()) return;
    const CRect line = LineOf(layout);
    const int middle = line.CenterPoint().y;
    const int place = PlaceOnLine(state, line, state.FramePosition() - 1);
    dc.FillSolidRect(&line, palette::line);
    CRect gone = line;
    gone.right = place;
    dc.FillSolidRect(&gone, palette::accent);
    for (const int frame : state.Source().Marks())
        if (frame < state.Source().Frames())
            DrawAt(dc, layout, {PlaceOnLine(state, line, frame), middle}, tickSize, palette::scale);
    DrawAt(dc, layout, {place, middle}, markSize, palette::text);
}

int PlaceAt(const ExamState& state, int x)
{
    const CRect line = LineOf(state.Layout());
    const int last = std::max(0, state.Source().Frames() - 1);
    const double share = 1.0 * (x - line.left) / std::max(1, line.Width());
    return std::clamp(static_cast<int>(std::lround(share * last)), 0, last);
}

} // namespace exam
