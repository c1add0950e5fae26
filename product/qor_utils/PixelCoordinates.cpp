#include <qor_utils/PixelCoordinates.h>

#include <qor_utils/ConversionModel.h>
#include <qor_utils/Rounding.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

int Saturate(std::int64_t value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

int ToPixel(int origin, double microns, int micronsPerPixel)
{
    return micronsPerPixel == 0 ? origin : qor_utils::round(origin + microns / micronsPerPixel);
}

UPoint Flip(UPoint pixel, int width, int height, int flip)
{
    if (width == 0 || height == 0) return pixel;
    if (flip & 1) pixel.x = Saturate(std::int64_t{width} - pixel.x);
    if (flip & 2) pixel.y = Saturate(std::int64_t{height} - pixel.y);
    return pixel;
}

int ScaleEdge(int edge, int lines, int elements)
{
    return Saturate(std::int64_t{edge} * lines / elements);
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
    const int lines = ld > 0 || !probe ? ld : probe->elements;
    const double steer = scanA * radiansPerMillidegree;
    const ConversionModel model(probe, lines, samplingFreq, soundSpeed, scanB, std::sin(steer),
                                std::cos(steer));
    const MicronPoint point =
        model.ToMicrons({static_cast<double>(line) + scanC, static_cast<double>(sample)});
    const UPoint pixel{ToPixel(origin.x, point.x, micronsPerPixel.x),
                       ToPixel(origin.y, point.y, micronsPerPixel.y)};
    return Flip(pixel, width, height, flip);
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
