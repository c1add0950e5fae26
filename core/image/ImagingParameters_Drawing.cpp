#include "image/ImagingParameters.h"

#include "base/Painting.h"

#include <qor_utils/PixelCoordinates.h>
#include <Utils_Statics/CImgGeometry.h>
#include <Utils_Statics/MfcConversions.h>

namespace exam {

using QOR_MFC_CONVERSIONS::MFC_2_QOR;
using QOR_MFC_CONVERSIONS::QOR_2_MFC;

// A mirrored context draws arcs the other way round on some devices, so that the library mirrors
// them: about the middle of the first and the last column, where the image is mirrored too.
void ImagingParameters::DrawDepthLine(CDC& dc, int sample, int line1, int line2) const
{
    const SavedState saved(dc);
    const bool isMirrored = orientation.flipsSides != orientation.flipsDepth;
    Orientation turned = orientation;
    turned.flipsSides = turned.flipsSides != isMirrored;
    ImageTurn(turned, CSize(width, height)).TurnDrawing(dc);
    CImgGeometry::DrawHorizontalUSLine(&dc, sample, line1, line2, origin, micronsPerPixel,
                                       samplingFreq, steerAngle, apexAngle, &probe, soundSpeed,
                                       lineOffset, width - 1, height,
                                       isMirrored ? qor_utils::flipLeftRight : 0, lines);
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
