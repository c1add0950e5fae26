#include "measure/DistanceCaliper.h"

#include <Utils_Statics/GetStr.h>

namespace exam {

double DistanceCaliper::Millimetres() const
{
    return Image().Millimetres(Points()[0], Points()[1]);
}

void DistanceCaliper::Draw(CDC& dc) const
{
    dc.MoveTo(Points()[0]);
    dc.LineTo(Points()[1]);
    DrawPoints(dc);
}

CString DistanceCaliper::Readout() const
{
    return GetStr("exam.value.millimetres", Millimetres());
}

} // namespace exam
