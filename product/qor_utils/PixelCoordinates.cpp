#include "qor_utils/PixelCoordinates.h"

#include <base/WrapArithmetic.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/Rounding.h>
#include <qor_utils/ScanGeometry.h>

#include <cstdint>

namespace {

int ToPixel(int origin, double microns, int micronsPerPixel)
{
    return micronsPerPixel == 0 ? origin : qor_utils::round(origin + microns / micronsPerPixel);
}

UPoint Flipped(UPoint pixel, const qor_utils::ScanGeometry& g)
{
    if (g.width == 0 || g.height == 0) return pixel;
    if (g.flip & qor_utils::flipLeftRight)
        pixel.x = base::wrap::Saturate(std::int64_t{g.width} - pixel.x);
    if (g.flip & qor_utils::flipTopBottom)
        pixel.y = base::wrap::Saturate(std::int64_t{g.height} - pixel.y);
    return pixel;
}

// The display pixel of a line and a sample, after flipping.
UPoint PixelOf(const qor_utils::ScanGeometry& g, int line, int sample)
{
    const qor_utils::MicronPoint point = qor_utils::ConversionModel(g).ToMicrons(
        {static_cast<double>(line), static_cast<double>(sample)});
    const UPoint pixel{ToPixel(g.origin.x, point.x, g.micronsPerPixel.x),
                       ToPixel(g.origin.y, point.y, g.micronsPerPixel.y)};
    return Flipped(pixel, g);
}

int ScaleEdge(int edge, int lines, int elements)
{
    return base::wrap::Saturate(std::int64_t{edge} * lines / elements);
}

} // namespace

namespace qor_utils {

UPoint GetPixelCoordinates(int line, int sample, const UPoint& origin,
                           const UPoint& micronsPerPixel, int samplingFreq, int scanA, int scanB,
                           const ZelProbe* probe, int soundSpeed, int scanC, int width, int height,
                           int flip)
{
    return GetPixelCoordinatesLD(line, sample, origin, micronsPerPixel, samplingFreq, scanA, scanB,
                                 probe, soundSpeed, 0, scanC, width, height, flip);
}

UPoint GetPixelCoordinatesLD(int line, int sample, const UPoint& origin,
                             const UPoint& micronsPerPixel, int samplingFreq, int scanA, int scanB,
                             const ZelProbe* probe, int soundSpeed, int ld, int scanC, int width,
                             int height, int flip)
{
    ScanGeometry geometry;
    geometry.probe = probe;
    geometry.lines = ld > 0 || !probe ? ld : probe->elements;
    geometry.samplingFreq = samplingFreq;
    geometry.soundSpeed = soundSpeed;
    geometry.steerAngle = scanA;
    geometry.scanB = scanB;
    geometry.lineOffset = scanC;
    geometry.origin = origin;
    geometry.micronsPerPixel = micronsPerPixel;
    geometry.width = width;
    geometry.height = height;
    geometry.flip = flip;
    return PixelOf(geometry, line, sample);
}

double GetSampleSize(int samplingFreq, int soundSpeed)
{
    return SampleSize(samplingFreq, soundSpeed);
}

void ConvertRect(const URect& in, int lines, int elements, URect& out)
{
    if (elements <= 0)
        out = URect{};
    else
        out = URect{ScaleEdge(in.left, lines, elements), in.top,
                    ScaleEdge(in.right, lines, elements), in.bottom};
}

} // namespace qor_utils
