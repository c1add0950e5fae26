#include <qor_imgproc/PixelConverter.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <limits>

namespace {

constexpr double positionLimit = 1 << 26; // sixteenths still fit into 32 bits

constexpr int everyPixel = INT_MAX - 1; // of a column; can be stepped over without overflow

struct Sixteenths
{
    int whole;
    unsigned int fraction;
};

int Floor(double value)
{
    const int truncated = static_cast<int>(value);
    return truncated - (truncated > value ? 1 : 0);
}

Sixteenths ToSixteenths(double position, int corner)
{
    const double bounded = std::clamp(position, -positionLimit, positionLimit);
    const int sixteenths = Floor(bounded * 16 + 0.5);
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t whole = std::int64_t{sixteenths >> 4} - corner;
    return {static_cast<int>(std::clamp<std::int64_t>(whole, Limits::min(), Limits::max())),
            static_cast<unsigned int>(sixteenths & 15)};
}

// The index at which a position starts to count as `end`, once it is rounded to sixteenths.
double Threshold(int end, int corner)
{
    return static_cast<double>(end) + corner - 1.0 / 32;
}

} // namespace

PixelConverter::PixelConverter(const URect& lineSampleRect, const ZelProbe* probe, int soundSpeed,
                               int scanB, int lines, int samplingFreq, const UPoint& origin,
                               const UPoint& micronsPerPixel, double sinSteer, double cosSteer)
    : m_model(micronsPerPixel.x != 0 && micronsPerPixel.y != 0 ? probe : nullptr, lines,
              samplingFreq, soundSpeed, scanB, sinSteer, cosSteer),
      m_origin(origin), m_scale(micronsPerPixel), m_corner{lineSampleRect.left, lineSampleRect.top}
{
}

ScanPixel PixelConverter::At(int x, int y) const
{
    return Quantise(m_model.ToScan(ToMicrons(x, y)));
}

PixelConverter::Outside PixelConverter::TestUpwards(int x, int y, int lineEnd, int sampleEnd) const
{
    const qor_utils::MicronPoint point = ToMicrons(x, y);
    const qor_utils::ScanPoint scan = m_model.ToScan(point);
    Outside result;
    result.pixel = Quantise(scan);
    const auto& [line, sample, lineFraction, sampleFraction] = result.pixel;
    result.inside = line > 0 && line < lineEnd && sample > 0 && sample < sampleEnd;
    if (result.inside) return result;
    if (m_model.Shape() == qor_utils::ScanShape::none) {
        result.pixelsAbove = everyPixel; // all alike
        result.pixelsPastLines = line >= lineEnd ? everyPixel : 0;
        return result;
    }

    const auto lineClearance = [&](int end) {
        return PixelsWithin(m_model.ClearanceToLine(point, scan, Threshold(end, m_corner.x)));
    };
    const auto sampleClearance = [&](int end) {
        return PixelsWithin(m_model.ClearanceToSample(point, scan, Threshold(end, m_corner.y)));
    };
    if (line >= lineEnd) result.pixelsPastLines = lineClearance(lineEnd);
    result.pixelsAbove = result.pixelsPastLines;
    if (line <= 0) result.pixelsAbove = std::max(result.pixelsAbove, lineClearance(1));
    if (sample <= 0) result.pixelsAbove = std::max(result.pixelsAbove, sampleClearance(1));
    if (sample >= sampleEnd)
        result.pixelsAbove = std::max(result.pixelsAbove, sampleClearance(sampleEnd));
    return result;
}

qor_utils::MicronPoint PixelConverter::ToMicrons(int x, int y) const
{
    return {(static_cast<double>(x) - m_origin.x) * m_scale.x,
            (static_cast<double>(y) - m_origin.y) * m_scale.y};
}

ScanPixel PixelConverter::Quantise(const qor_utils::ScanPoint& scan) const
{
    if (m_model.Shape() == qor_utils::ScanShape::none || std::isnan(scan.line) ||
        std::isnan(scan.sample))
        return {};
    const Sixteenths line = ToSixteenths(scan.line, m_corner.x);
    const Sixteenths sample = ToSixteenths(scan.sample, m_corner.y);
    return {line.whole, sample.whole, line.fraction, sample.fraction};
}

int PixelConverter::PixelsWithin(double microns) const
{
    // Far from the probe the rounding errors of positions are no longer small against a pixel: no
    // promise is made.
    constexpr double largest = 1e9;
    if (!(microns < largest)) return 0;
    // The hundredth of a pixel is far above the rounding errors of a bound.
    return std::max(0,
                    static_cast<int>(microns / std::fabs(static_cast<double>(m_scale.y)) - 0.01));
}
