#include "measure/MarkSurface.h"

#include "study/SpectralPoints.h"

#include <qor_utils/ConversionModel.h>

#include <algorithm>

namespace exam {

namespace {

// Samples and lines by which a point may miss the shown ones for rounding.
constexpr double tolerance = 1e-6;

} // namespace

CRect FrameSurface::Area() const
{
    return {m_corner, m_view.Parameters().Size()};
}

PixelPoint FrameSurface::PixelOf(const MarkPoint& point) const
{
    const ImagingParameters& image = m_view.Parameters();
    const qor_utils::ConversionModel model(image.ToScanGeometry());
    const qor_utils::MicronPoint place = model.ToMicrons({point.x, point.y});
    const PixelPoint pixel = image.PixelOf({place.x, place.y});
    return {m_corner.x + pixel.x, m_corner.y + pixel.y};
}

MarkPoint FrameSurface::PointAt(const PixelPoint& pixel) const
{
    const ImagingParameters& image = m_view.Parameters();
    const qor_utils::ConversionModel model(image.ToScanGeometry());
    const FramePoint place = image.InFrame({pixel.x - m_corner.x, pixel.y - m_corner.y});
    const qor_utils::ScanPoint scan = model.ToScan({place.x, place.y});
    return {std::clamp(scan.line, 0.0, std::max(0.0, image.lines - 1.0)),
            std::clamp(scan.sample, 0.0, std::max(0.0, image.samples - 1.0))};
}

bool FrameSurface::Shows(const MarkPoint& point) const
{
    const ImagingParameters& image = m_view.Parameters();
    return point.x >= -tolerance && point.y >= -tolerance &&
           point.x <= image.lines - 1 + tolerance && point.y <= image.samples - 1 + tolerance;
}

MarkPoint FrameSurface::Way(const PixelPoint& from, const PixelPoint& to) const
{
    constexpr double micronsPerMillimetre = 1000;
    const FramePoint a = m_view.Parameters().InFrame(from);
    const FramePoint b = m_view.Parameters().InFrame(to);
    return {(b.x - a.x) / micronsPerMillimetre, (b.y - a.y) / micronsPerMillimetre};
}

PixelPoint StripSurface::PixelOf(const MarkPoint& point) const
{
    return {m_strip.ColumnOf(point.x), m_strip.Plot().bottom - exam::PixelOf(point.y)};
}

MarkPoint StripSurface::PointAt(const PixelPoint& pixel) const
{
    const CRect plot = m_strip.Plot();
    const double x = std::clamp<double>(pixel.x, plot.left, std::max(plot.left, plot.right - 1));
    const double y = std::clamp<double>(pixel.y, plot.top, plot.bottom);
    return {m_strip.TimeAt(x), VelocityAt(plot.bottom - y)};
}

bool StripSurface::Shows(const MarkPoint& point) const
{
    const CRect plot = m_strip.Plot();
    const double x = m_strip.ColumnOf(point.x);
    return x >= plot.left - 0.5 && x <= plot.right + 0.5;
}

MarkPoint StripSurface::Way(const PixelPoint& from, const PixelPoint& to) const
{
    const double height = m_strip.Plot().bottom;
    return {m_strip.TimeAt(to.x) - m_strip.TimeAt(from.x),
            VelocityAt(height - to.y) - VelocityAt(height - from.y)};
}

} // namespace exam
