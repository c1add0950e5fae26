#include "measure/AngleTool.h"

#include "base/Strokes.h"

#include <Utils_Statics/GetStr.h>

#include <cmath>
#include <numbers>

namespace exam {

double AngleTool::Degrees() const
{
    const CSize a = Points()[0] - Points()[1];
    const CSize b = Points()[2] - Points()[1];
    const double sx = Image().micronsPerPixel.x;
    const double sy = Image().micronsPerPixel.y;
    const double dot = a.cx * sx * b.cx * sx + a.cy * sy * b.cy * sy;
    const double cross = (1.0 * a.cx * b.cy - 1.0 * a.cy * b.cx) * sx * sy;
    return std::abs(std::atan2(cross, dot)) * 180 / std::numbers::pi;
}

void AngleTool::Draw(CDC& dc) const
{
    DrawLines(dc, Points());
    DrawPoints(dc);
}

CString AngleTool::Readout() const
{
    return GetStr("exam.value.degrees", Degrees());
}

} // namespace exam
