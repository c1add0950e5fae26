// CImgGeometry: the mask of the imaged region.
#include "Utils_Statics/CImgGeometry.h"

#include "geometry/Angle.h"

#include <base/WrapArithmetic.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/PixelCoordinates.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

using namespace utils_statics;

namespace {

// The parameters of CreateImageMask that are passed to the scan converter.
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
};

// The scan converter's result for one pixel.
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
    Region(const Imaging& imaging, const URect& imageRect)
        : m_imaging(imaging), m_sinSteer(std::sin(ToRadians(imaging.steerAngle))),
          m_cosSteer(std::cos(ToRadians(imaging.steerAngle)))
    {
        const int elements = imaging.probe ? imaging.probe->elements : 0;
        qor_utils::ConvertRect(imageRect, imaging.lines, elements, m_rect);
    }

    int Lines() const { return base::wrap::Subtract(m_rect.right, m_rect.left); }
    int Samples() const { return base::wrap::Subtract(m_rect.bottom, m_rect.top); }

    // Pixels on the region's edges, at both ends, are outside.
    Pixel At(int x, int y, bool fine) const
    {
        const Imaging& i = m_imaging;
        int line = 0;
        int sample = 0;
        unsigned int lineFraction = 0;
        unsigned int sampleFraction = 0;
        ScanConverter::GetPreciseUSCoordinates(x, y, &line, &sample, &lineFraction, &sampleFraction,
                                               m_rect, i.probe, i.soundSpeed, i.steerAngle, i.scanB,
                                               i.lines, i.samplingFreq, i.origin, i.micronsPerPixel,
                                               m_sinSteer, m_cosSteer, fine);
        return {line, line > 0 && line < Lines() && sample > 0 && sample < Samples()};
    }

private:
    const Imaging& m_imaging;
    double m_sinSteer;
    double m_cosSteer;
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
