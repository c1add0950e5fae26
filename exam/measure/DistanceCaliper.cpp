#include "measure/DistanceCaliper.h"

#include "base/Strokes.h"

#include <Utils_Statics/GetStr.h>

namespace exam {

double DistanceCaliper::Millimetres() const
{
    return Image().Millimetres(Points()[0], Points()[1]);
}

void DistanceCaliper::Draw(CDC& dc) const
{
    DrawLines(dc, Points());
    DrawPoints(dc);
}

CString DistanceCaliper::Readout() const
{
    return GetStr("exam.value.millimetres", Millimetres());
}

} // namespace exam
