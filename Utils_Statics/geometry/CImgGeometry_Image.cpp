// CImgGeometry: conversions between pixels and scan coordinates, and the mask of the imaged region.
#include "Utils_Statics/CImgGeometry.h"

#include <base/WrapArithmetic.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/Rounding.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace {

double ToRadians(int milliDegrees)
{
    return milliDegrees * 1.7453292519943296e-5;
}

// The parameters that go to the scan converter.
struct Imaging
{
    const ZelProbe* probe;
    int soundSpeed;
    int steerAngle;
    int scanB;
    int lines;
    int samplingFreq;
    const UPoint& origin;
    const UPoint& micronsPerPixel;
    double sinSteer = std::sin(ToRadians(steerAngle));
    double cosSteer = std::cos(ToRadians(steerAngle));
};

// The scan converter's result for one pixel, relative to a region's first line and sample.
struct ScanPosition
{
    int line = 0;
    int sample = 0;
    unsigned int lineFraction = 0;
    unsigned int sampleFraction = 0;
};

ScanPosition Convert(const Imaging& i, const URect& region, int x, int y, bool fine)
{
    ScanPosition at;
    ScanConverter::GetPreciseUSCoordinates(x, y, &at.line, &at.sample, &at.lineFraction,
                                           &at.sampleFraction, region, i.probe, i.soundSpeed,
                                           i.steerAngle, i.scanB, i.lines, i.samplingFreq, i.origin,
                                           i.micronsPerPixel, i.sinSteer, i.cosSteer, fine);
    return at;
}

// A pixel of the mask.
struct Pixel
{
    int line; // relative to the region's first line
    bool isInside;
};

// The imaged region, in lines x samples.
class Region
{
public:
    // `imageRect` is in elements x samples.
    Region(const Imaging& imaging, const URect& imageRect) : m_imaging(imaging)
    {
        const int elements = imaging.probe ? imaging.probe->elements : 0;
        qor_utils::ConvertRect(imageRect, imaging.lines, elements, m_rect);
    }

    int Lines() const { return base::wrap::Subtract(m_rect.right, m_rect.left); }
    int Samples() const { return base::wrap::Subtract(m_rect.bottom, m_rect.top); }

    // Pixels on the region's edges, at both ends, are outside.
    Pixel At(int x, int y, bool fine) const
    {
        const ScanPosition at = Convert(m_imaging, m_rect, x, y, fine);
        return {at.line,
                at.line > 0 && at.line < Lines() && at.sample > 0 && at.sample < Samples()};
    }

private:
    const Imaging& m_imaging;
    URect m_rect;
};

// The result of a search up a column.
struct Rise
{
    int bottom;       // the lowest inside pixel, -1 for none
    int smallestLine; // on the way up to it
};

Rise SearchUpwards(const Region& region, int x, int height)
{
    int smallestLine = region.Lines();
    for (int y = height - 1; y >= 0; --y) {
        const Pixel pixel = region.At(x, y, false);
        smallestLine = std::min(smallestLine, pixel.line);
        if (pixel.isInside) return {y, smallestLine};
    }
    return {-1, smallestLine};
}

// The highest inside pixel of a column, whose inside pixels form one run that ends at `bottom`.
int FindTop(const Region& region, int x, int bottom)
{
    int outside = -1;
    int inside = bottom;
    while (outside < inside - 1) {
        const int middle = (outside + inside) / 2;
        if (region.At(x, middle, true).isInside)
            inside = middle;
        else
            outside = middle;
    }
    return inside;
}

} // namespace

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
    const Imaging imaging = {probe,   soundSpeed,   steerAngle, scanB,
                             divisor, samplingFreq, origin,     micronsPerPixel};
    const ScanPosition at = Convert(imaging, {}, x, y, false);
    const double element = (at.lineFraction * 0.0625 + at.line) * probe->elements / divisor;
    return {base::wrap::Subtract(qor_utils::round(element), lineOffset),
            qor_utils::round(at.sampleFraction * 0.0625 + at.sample)};
}

bool CImgGeometry::CreateImageMask(unsigned char* mask, int width, int height, int samplingFreq,
                                   int steerAngle, int lines, CRect imageRect, int scanB,
                                   const ZelProbe* probe, int soundSpeed, const UPoint& origin,
                                   const UPoint& micronsPerPixel, unsigned char value)
{
    if (width < 1 || height < 1) return true;
    if (!mask) return false;
    const Imaging imaging = {probe, soundSpeed,   steerAngle, scanB,
                             lines, samplingFreq, origin,     micronsPerPixel};
    const Region region(imaging,
                        {imageRect.left, imageRect.top, imageRect.right, imageRect.bottom});
    const auto stride = static_cast<std::size_t>(width);
    std::memset(mask, 0, stride * static_cast<std::size_t>(height));
    for (int x = 0; x < width; ++x) {
        const auto [bottom, smallestLine] = SearchUpwards(region, x, height);
        if (smallestLine >= region.Lines()) return true; // the rest lies past the imaged region
        if (bottom < 0) continue;
        for (int y = FindTop(region, x, bottom); y <= bottom; ++y)
            mask[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x)] = value;
    }
    return true;
}

void CImgGeometry::CenterImageRect(CRect& rect, int width)
{
    const int w = base::wrap::Subtract(rect.right, rect.left);
    rect.left = width / 2 - w / 2 - 1; // one to the left of the middle, deliberately
    rect.right = base::wrap::Add(rect.left, w);
}
