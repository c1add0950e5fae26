#include "Utils_Statics/CImgGeometry.h"

#include "geometry/Angle.h"

#include <base/WrapArithmetic.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/Rounding.h>

#include <cmath>

UPoint CImgGeometry::GetPixelDistanceCoordinates(int line, int startSample, int distanceMicrons,
                                                 const UPoint& origin,
                                                 const UPoint& micronsPerPixel, int samplingFreq,
                                                 int scanA, int scanB, const ZelProbe* probe,
                                                 int soundSpeed, int scanC, int width, int height,
                                                 int flip)
{
    const double micronsPerSample =
        base::wrap::Multiply(soundSpeed, 1000000) / (2.0 * samplingFreq);
    const int samples = base::wrap::Truncate(distanceMicrons / micronsPerSample);
    return qor_utils::GetPixelCoordinates(line, base::wrap::Add(startSample, samples), origin,
                                          micronsPerPixel, samplingFreq, scanA, scanB, probe,
                                          soundSpeed, scanC, width, height, flip);
}

int CImgGeometry::GetUSDistance(int sample1, int sample2, int samplingFreq, int soundSpeed)
{
    return base::wrap::Truncate(qor_utils::GetSampleSize(samplingFreq, soundSpeed) *
                                base::wrap::Subtract(sample2, sample1));
}

UPoint CImgGeometry::GetUSCoordinates(int x, int y, const UPoint& origin,
                                      const UPoint& micronsPerPixel, int samplingFreq,
                                      int steerAngle, int scanB, int lines, const ZelProbe* probe,
                                      int soundSpeed, int lineOffset, int width, int height,
                                      int flip)
{
    if (!probe) return {};
    if (width != 0 && height != 0) {
        if (flip & qor_utils::flipTopBottom) y = base::wrap::Subtract(height, y);
        if (flip & qor_utils::flipLeftRight) x = base::wrap::Subtract(width, x);
    }
    const bool isFan =
        probe->type == qor_utils::curvedProbe || probe->type == qor_utils::phasedProbe;
    const int divisor = isFan ? lines : probe->elements;
    const double steer = utils_statics::ToRadians(steerAngle);
    int line = 0;
    int sample = 0;
    unsigned int lineFraction = 0;
    unsigned int sampleFraction = 0;
    ScanConverter::GetPreciseUSCoordinates(x, y, &line, &sample, &lineFraction, &sampleFraction,
                                           URect{}, probe, soundSpeed, steerAngle, scanB, divisor,
                                           samplingFreq, origin, micronsPerPixel, std::sin(steer),
                                           std::cos(steer), false);
    const double element = (lineFraction * 0.0625 + line) * probe->elements / divisor;
    return {base::wrap::Subtract(qor_utils::round(element), lineOffset),
            qor_utils::round(sampleFraction * 0.0625 + sample)};
}

void CImgGeometry::CenterImageRect(CRect& rect, int width)
{
    const int w = base::wrap::Subtract(rect.right, rect.left);
    rect.left = width / 2 - w / 2 - 1; // one to the left of the middle, deliberately
    rect.right = base::wrap::Add(rect.left, w);
}
