#include <qor_imgproc/FrameMap.h>

#include <qor_utils/ConversionModel.h>

#include <algorithm>
#include <climits>
#include <new>

using qor_utils::ConversionModel;
using qor_utils::MicronPoint;
using qor_utils::ScanPoint;
using qor_utils::ScanShape;

namespace {

/// An arc tangent without branches, which the compiler turns into vector instructions. Abramowitz and Stegun,
/// Handbook of Mathematical Functions, 4.4.49: |error| <= 2e-8 radians, a millionth of a line in any real frame.
struct VectorMath
{
    static double AngleFromAxis(double x, double y)
    {
        const double ax = std::fabs(x);
        const double ay = std::fabs(y);
        const double smaller = ax < ay ? ax : ay;
        const double larger = ax < ay ? ay : ax;
        const double octant = ArcTangent(smaller / (larger > Tiny ? larger : Tiny));
        const double quadrant = ax < ay ? octant : HalfPi - octant;
        const double half = y < 0 ? 2 * HalfPi - quadrant : quadrant;
        return x < 0 ? -half : half;
    }

private:
    static constexpr double Tiny = 1e-300;
    static constexpr double HalfPi = 1.5707963267948966;

    static double ArcTangent(double t)
    {
        const double s = t * t;
        const double series =
            1 +
            s * (-0.3333314528 +
                 s * (0.1999355085 +
                      s * (-0.1420889944 +
                           s * (0.1065626393 +
                                s * (-0.0752896400 + s * (0.0429096138 + s * (-0.0161657367 + s * 0.0028662257)))))));
        return t * series;
    }
};

bool SizesFit(const FrameGeometry& g)
{
    constexpr long long mostPixels = 1 << 26; // half a gigabyte of map
    const auto fits = [](int a, int b, long long most) {
        return a > 0 && b > 0 && static_cast<long long>(a) * b <= most;
    };
    return fits(g.lines, g.samples, INT_MAX) && fits(g.width, g.height, mostPixels);
}

double Unflip(int position, int size, bool flipped)
{
    return flipped ? static_cast<double>(size) - position : static_cast<double>(position);
}

// One image row of positions; a loop that the compiler vectorises.
template <ScanShape shape>
void ConvertRow(const ConversionModel& model, double left, double step, double y, std::vector<ScanPoint>& row)
{
    const int width = static_cast<int>(row.size());
    ScanPoint* out = row.data();
    for (int x = 0; x < width; ++x)
        out[x] = model.ToScan<shape, VectorMath>({left + x * step, y});
}

void ConvertRow(const ConversionModel& model, double left, double step, double y, std::vector<ScanPoint>& row)
{
    if (model.Shape() == ScanShape::Curved) ConvertRow<ScanShape::Curved>(model, left, step, y, row);
    if (model.Shape() == ScanShape::Linear) ConvertRow<ScanShape::Linear>(model, left, step, y, row);
    if (model.Shape() == ScanShape::Phased) ConvertRow<ScanShape::Phased>(model, left, step, y, row);
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

} // namespace

FrameMap::FrameMap(const FrameGeometry& geometry)
    : m_lines(geometry.lines), m_samples(geometry.samples),
      m_nextLine(geometry.lines > 1 ? static_cast<std::size_t>(geometry.samples) : 0),
      m_nextSample(geometry.samples > 1 ? 1 : 0)
{
    const double steer = geometry.steerAngle * qor_utils::RadiansPerMillidegree;
    const ConversionModel model(geometry.probe, geometry.lines, geometry.samplingFreq, geometry.soundSpeed,
                                geometry.scanB, std::sin(steer), std::cos(steer));
    const UPoint& scale = geometry.micronsPerPixel;
    if (model.Shape() == ScanShape::None || scale.x == 0 || scale.y == 0 || !SizesFit(geometry)) return;
    try {
        Fill(geometry, model);
    } catch (const std::bad_alloc&) {
        m_pixels.clear();
    }
}

void FrameMap::Fill(const FrameGeometry& geometry, const ConversionModel& model)
{
    const auto width = static_cast<std::size_t>(geometry.width);
    m_pixels.reserve(width * static_cast<std::size_t>(geometry.height));
    std::vector<ScanPoint> row(width);
    const UPoint& origin = geometry.origin;
    const UPoint& scale = geometry.micronsPerPixel;
    const double step = geometry.flip & 1 ? -static_cast<double>(scale.x) : scale.x;
    const double left = (Unflip(0, geometry.width, geometry.flip & 1) - origin.x) * scale.x;
    for (int y = 0; y < geometry.height; ++y) {
        const double down = (Unflip(y, geometry.height, geometry.flip & 2) - origin.y) * scale.y;
        ConvertRow(model, left, step, down, row);
        for (const ScanPoint& scan : row)
            m_pixels.push_back(MakePixel(scan.line, scan.sample));
    }
}

FrameMap::Pixel FrameMap::MakePixel(double line, double sample) const
{
    if (!(line >= 0 && line <= m_lines - 1 && sample >= 0 && sample <= m_samples - 1)) return {Outside, 0, 0};
    const Between lines = Split(line, m_lines);
    const Between samples = Split(sample, m_samples);
    return {static_cast<std::uint32_t>(lines.first) * static_cast<std::uint32_t>(m_samples) +
                static_cast<std::uint32_t>(samples.first),
            static_cast<std::uint16_t>(lines.weight), static_cast<std::uint16_t>(samples.weight)};
}

bool FrameMap::Convert(const unsigned char* frame, unsigned char* image, unsigned char background) const
{
    if (!Valid() || !frame || !image) return false;
    for (const Pixel& pixel : m_pixels)
        *image++ = pixel.offset == Outside ? background : Interpolate(frame + pixel.offset, pixel);
    return true;
}

unsigned char FrameMap::Interpolate(const unsigned char* first, const Pixel& pixel) const
{
    const auto along = [&](const unsigned char* p) {
        return p[0] * (256u - pixel.sampleWeight) + p[m_nextSample] * static_cast<unsigned int>(pixel.sampleWeight);
    };
    const unsigned int here = along(first);
    const unsigned int next = along(first + m_nextLine);
    return static_cast<unsigned char>((here * (256u - pixel.lineWeight) + next * pixel.lineWeight + 0x8000u) >> 16);
}
