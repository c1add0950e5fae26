#include "image/ImagingParameters.h"

#include <Utils_Statics/CImgGeometry.h>
#include <Utils_Statics/MfcConversions.h>

namespace exam {

using QOR_MFC_CONVERSIONS::MFC_2_QOR;
using QOR_MFC_CONVERSIONS::QOR_2_MFC;

void ImagingParameters::DrawDepthLine(CDC& dc, int sample, int line1, int line2) const
{
    CImgGeometry::DrawHorizontalUSLine(&dc, sample, line1, line2, origin, micronsPerPixel,
                                       samplingFreq, steerAngle, apexAngle, &probe, soundSpeed,
                                       lineOffset, width, height, flip, lines);
}

CPoint ImagingParameters::EntryOfBeam(const UPoint& first, const UPoint& second) const
{
    const auto between = [](CPoint a, CPoint b) { return ULine{a.x, a.y, b.x, b.y}; };
    const ULine beam = between(Pixel(first.x, first.y), Pixel(second.x, second.y));
    UPoint entry = MFC_2_QOR(Pixel(first.x, 0));
    CImgGeometry::GetIntersectPt(beam, between(Pixel(first.x - 1, 0), Pixel(first.x + 1, 0)),
                                 entry); // is unchanged where they do not meet
    return QOR_2_MFC(entry);
}

} // namespace exam
