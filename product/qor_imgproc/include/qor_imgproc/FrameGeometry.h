#pragma once

#include <qor_utils/UPoint.h>
#include <qor_utils/ZelProbe.h>

/// How one frame lies in an image: what whole-frame scan conversion needs to know.
struct FrameGeometry
{
    const ZelProbe* probe = nullptr; ///< used during the call only
    int lines = 0;                   ///< scan lines of the frame, over the whole aperture
    int samples = 0;                 ///< samples a line
    int samplingFreq = 0;            ///< Hz
    int soundSpeed = 1540;           ///< m/s
    int steerAngle = 0;              ///< thousandths of a degree
    int scanB = 0;                   ///< extension of a phased sector, thousandths of a degree
    UPoint origin;                   ///< pixel of the image origin before flipping
    UPoint micronsPerPixel;
    int width = 0; ///< of the image, pixels
    int height = 0;
    int flip = 0; ///< bit 0 left-right, bit 1 top-bottom
};
