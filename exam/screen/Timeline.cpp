#include "screen/Timeline.h"

#include "base/Palette.h"

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int lineHeight = 4;
constexpr CSize markSize(10, 20);

// The line itself, whose ends are the middles of the mark's first and last place.
CRect LineOf(const ScreenLayout& layout)
{
    CRect line = layout.timeline;
    line.DeflateRect(layout.Scaled(markSize.cx), 0);
    line.top = line.CenterPoint().y - layout.Scaled(lineHeight) / 2;
    line.bottom = line.top + layout.Scaled(lineHeight);
    return line;
}

int PlaceOnLine(const ExamState& state, const CRect& line)
{
    const int steps = std::max(1, state.Source().Frames() - 1);
    const int place = state.FramePosition() - 1;
    return line.left + static_cast<int>(std::lround(1.0 * line.Width() * place / steps));
}

} // namespace

void DrawTimeline(CDC& dc, const ExamState& state)
{
    const ScreenLayout& layout = state.Layout();
    if (layout.timeline.IsRectEmpty() || !state.HasSource()) return;
    const CRect line = LineOf(layout);
    const int place = PlaceOnLine(state, line);
    dc.FillSolidRect(&line, palette::line);
    CRect gone = line;
    gone.right = place;
    dc.FillSolidRect(&gone, palette::accent);
    const CSize size(layout.Scaled(markSize.cx), layout.Scaled(markSize.cy));
    const CRect mark(CPoint(place - size.cx / 2, line.CenterPoint().y - size.cy / 2), size);
    dc.FillSolidRect(&mark, palette::text);
}

int PlaceAt(const ExamState& state, int x)
{
    const CRect line = LineOf(state.Layout());
    const int last = std::max(0, state.Source().Frames() - 1);
    const double share = 1.0 * (x - line.left) / std::max(1, line.Width());
    return std::clamp(static_cast<int>(std::lround(share * last)), 0, last);
}

} // namespace exam
