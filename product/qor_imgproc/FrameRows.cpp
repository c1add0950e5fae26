#include "FrameRows.h"

#include <qor_utils/PixelCoordinates.h>

#include <algorithm>
#include <climits>
#include <cmath>

namespace qor_imgproc {

using qor_utils::ConversionModel;
using qor_utils::ScanGeometry;
using qor_utils::ScanPoint;
using qor_utils::ScanShape;

namespace {

// An arc tangent several times as fast as the platform's. Abramowitz and Stegun, Handbook of
// Mathematical Functions, 4.4.49: |error| <= 2e-8 radians, a millionth of a line in any real
// frame.
struct QuickMath
{
    static double AngleFromAxis(double x, double y)
    {
        const double ax = std::fabs(x);
        const double ay = std::fabs(y);
        const double smaller = ax < ay ? ax : ay;
        const double larger = ax < ay ? ay : ax;
        const double octant = ArcTangent(smaller / (larger > tiny ? larger : tiny));
        // These only choose between constants, so there are no jumps to mispredict.
        const double quadrant = (ax < ay ? 0.0 : halfPi) + (ax < ay ? 1.0 : -1.0) * octant;
        const double half = (y < 0 ? 2 * halfPi : 0.0) + (y < 0 ? -1.0 : 1.0) * quadrant;
        return (x < 0 ? -1.0 : 1.0) * half;
    }

private:
    static constexpr double tiny = 1e-300;
    static constexpr double halfPi = 1.5707963267948966;

    static double ArcTangent(double t)
    {
        const double s = t * t;
        const double series =
            1 + s * (-0.3333314528 +
                     s * (0.1999355085 +
                          s * (-0.1420889944 +
                               s * (0.1065626393 +
                                    s * (-0.0752896400 +
                                         s * (0.0429096138 +
                                              s * (-0.0161657367 + s * 0.0028662257)))))));
        return t * series;
    }
};

bool IsFlipped(const ScanGeometry& g, qor_utils::Flip bit)
{
    return (g.flip & bit) != 0;
}

bool Fits(int a, int b, long long most)
{
    return a > 0 && b > 0 && static_cast<long long>(a) * b <= most;
}

// The position of a pixel row or column before flipping, in microns.
double Microns(int position, int size, bool flipped, int origin, int scale)
{
    const double unflipped =
        flipped ? static_cast<double>(size) - position : static_cast<double>(position);
    return (unflipped - origin) * scale;
}

// Interpolation between indices: the first of the two, and the weight of the second in 256ths.
struct Between
{
    int first;
    int weight;
};

Between Split(double position, int count)
{
    const int first = std::min(static_cast<int>(position), std::max(0, count - 2));
    return {first, static_cast<int>((position - first) * 256 + 0.5)};
}

// True for a position between the first index and the last; false for a NaN.
bool IsWithin(double position, int count)
{
    return position >= 0 && position <= count - 1;
}

FramePixel PixelAt(const Between& lines, const Between& samples, int samplesPerLine)
{
    return {static_cast<std::uint32_t>(lines.first) * static_cast<std::uint32_t>(samplesPerLine) +
                static_cast<std::uint32_t>(samples.first),
            static_cast<std::uint16_t>(lines.weight), static_cast<std::uint16_t>(samples.weight)};
}

} // namespace

FrameRows::FrameRows(const ScanGeometry& geometry)
    : m_geometry(geometry), m_model(geometry),
      m_left(Microns(0, geometry.width, IsFlipped(geometry, qor_utils::flipLeftRight),
                     geometry.origin.x, geometry.micronsPerPixel.x)),
      m_step(IsFlipped(geometry, qor_utils::flipLeftRight) ? -1.0 * geometry.micronsPerPixel.x
                                                           : 1.0 * geometry.micronsPerPixel.x),
      m_row(static_cast<std::size_t>(geometry.width))
{
}

bool FrameRows::HasImage(const ScanGeometry& g)
{
    constexpr long long mostPixels = 1 << 26; // half a gigabyte of map
    return Fits(g.lines, g.samples, INT_MAX) && Fits(g.width, g.height, mostPixels) &&
           g.micronsPerPixel.x != 0 && g.micronsPerPixel.y != 0 &&
           ConversionModel(g).Shape() != ScanShape::none;
}

void FrameRows::Row(int y, FramePixel* pixels)
{
    const double down =
        Microns(y, m_geometry.height, IsFlipped(m_geometry, qor_utils::flipTopBottom),
                m_geometry.origin.y, m_geometry.micronsPerPixel.y);
    if (m_model.Shape() == ScanShape::linear) LinearRow(down, pixels);
    if (m_model.Shape() == ScanShape::curved) FanRow<ScanShape::curved>(down, pixels);
    if (m_model.Shape() == ScanShape::phased) FanRow<ScanShape::phased>(down, pixels);
    if (m_model.Shape() == ScanShape::extended) FanRow<ScanShape::extended>(down, pixels);
}

FrameSteps FrameRows::Steps() const
{
    return {m_geometry.lines > 1 ? static_cast<std::uint32_t>(m_geometry.samples) : 0u,
            m_geometry.samples > 1 ? 1u : 0u};
}

// A row of a linear image lies at one depth, so all its pixels have the samples of the first.
void FrameRows::LinearRow(double y, FramePixel* pixels) const
{
    const ConversionModel model = m_model;
    const double left = m_left;
    const double step = m_step;
    const int width = m_geometry.width;
    const int lines = m_geometry.lines;
    const int samples = m_geometry.samples;
    const double sample = model.ToScan<ScanShape::linear, QuickMath>({left, y}).sample;
    std::fill_n(pixels, width, FramePixel());
    if (!IsWithin(sample, samples)) return;
    const Between depth = Split(sample, samples);
    for (int x = 0; x < width; ++x) {
        const double line = model.ToScan<ScanShape::linear, QuickMath>({left + x * step, y}).line;
        if (IsWithin(line, lines)) pixels[x] = PixelAt(Split(line, lines), depth, samples);
    }
}

// A copy of the model stays in registers, because the compiler knows that the loop does not write
// to it.
template <ScanShape shape>
void FrameRows::FanRow(double y, FramePixel* pixels)
{
    const ConversionModel model = m_model;
    const double left = m_left;
    const double step = m_step;
    const int width = m_geometry.width;
    ScanPoint* row = m_row.data();
    for (int x = 0; x < width; ++x)
        row[x] = model.ToScan<shape, QuickMath>({left + x * step, y});
    for (const ScanPoint& scan : m_row)
        *pixels++ = PixelOf(scan);
}

FramePixel FrameRows::PixelOf(const ScanPoint& scan) const
{
    const int lines = m_geometry.lines;
    const int samples = m_geometry.samples;
    if (!IsWithin(scan.line, lines) || !IsWithin(scan.sample, samples)) return {};
    return PixelAt(Split(scan.line, lines), Split(scan.sample, samples), samples);
}

} // namespace qor_imgproc
