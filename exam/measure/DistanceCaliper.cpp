#include "measure/DistanceCaliper.h"

#include <Utils_Statics/GetStr.h>

namespace exam {

double DistanceCaliper::Millimetres() const
{
    return image().Millimetres(points()[0], points()[1]);
}

void DistanceCaliper::Draw(CDC& dc) const
{
    dc.MoveTo(points()[0]);
    dc.LineTo(points()[1]);
    DrawPoints(dc);
}

CString DistanceCaliper::Readout() const
{
    return GetStr("exam.value.millimetres", Millimetres());
}

} // namespace exam
