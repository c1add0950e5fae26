#include "measure/AngleTool.h"

#include <Utils_Statics/GetStr.h>

#include <cmath>
#include <numbers>

namespace exam {

double AngleTool::Degrees() const
{
    const CSize a = points()[0] - points()[1];
    const CSize b = points()[2] - points()[1];
    const double sx = image().micronsPerPixel.x;
    const double sy = image().micronsPerPixel.y;
    const double dot = a.cx * sx * b.cx * sx + a.cy * sy * b.cy * sy;
    const double cross = (1.0 * a.cx * b.cy - 1.0 * a.cy * b.cx) * sx * sy;
    return std::abs(std::atan2(cross, dot)) * 180 / std::numbers::pi;
}

void AngleTool::Draw(CDC& dc) const
{
    dc.MoveTo(points()[0]);
    dc.LineTo(points()[1]);
    dc.LineTo(points()[2]);
    DrawPoints(dc);
}

CString AngleTool::Readout() const
{
    return GetStr("exam.value.degrees", Degrees());
}

} // namespace exam
