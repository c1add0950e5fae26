#pragma once

#include <qor_utils/UPoint.h>
#include <qor_utils/ZelProbe.h>

namespace qor_utils {

/// The acquisition of a frame and its position in its image. Imaging parameters are passed in this
/// one form from a file to a pixel. The operations whose parameter lists are fixed build one of
/// these.
struct ScanGeometry
{
    const ZelProbe* probe = nullptr; ///< used during a call only; null means no geometry
    int lines = 0;                   ///< scan lines over the whole aperture
    int samples = 0;                 ///< samples on a line of a whole frame
    int samplingFreq = 0;            ///< Hz
    int soundSpeed = 1540;           ///< m/s
    int steerAngle = 0;              ///< thousandths of a degree
    int scanB = 0;      ///< extension of a phased sector by a virtual apex, thousandths of a degree
    int lineOffset = 0; ///< the line of the aperture that is line 0
    UPoint origin;      ///< pixel of the image origin before flipping
    UPoint micronsPerPixel; ///< scale, across and down
    int width = 0;          ///< the image's, pixels
    int height = 0;         ///< the image's, pixels
    int flip = 0;           ///< a set of Flip bits
};

} // namespace qor_utils
