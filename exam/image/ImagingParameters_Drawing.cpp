#include "image/ImagingParameters.h"

#include <Utils_Statics/CImgGeometry.h>

namespace exam {

void ImagingParameters::DrawDepthLine(CDC& dc, int sample, int line1, int line2) const
{
    CImgGeometry::DrawHorizontalUSLine(&dc, sample, line1, line2, origin, micronsPerPixel,
                                       samplingFreq, steerAngle, apexAngle, &probe, soundSpeed,
                                       lineOffset, width, height, flip, lines);
}

} // namespace exam
