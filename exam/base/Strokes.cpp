#include "base/Strokes.h"

namespace exam {

void DrawLines(CDC& dc, std::span<const CPoint> points)
{
    if (points.empty()) return;
    dc.MoveTo(points.front());
    for (const CPoint& point : points.subspan(1))
        dc.LineTo(point);
}

void DrawLines(CDC& dc, std::initializer_list<CPoint> points)
{
    DrawLines(dc, std::span(points.begin(), points.size()));
}

} // namespace exam
