#include "image/ImagingParameters.h"

#include <qor_utils/PixelCoordinates.h>
#include <Utils_Statics/CImgGeometry.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace exam {

namespace {

constexpr int margin = 12;

// Microns per pixel at which the extent of a frame is measured before its scale is known. It is
// fine enough for any probe.
constexpr int measuringScale = 10;

// The image is mirrored and turned as a whole, see ImageTurn.
constexpr int unflipped = 0;

CPoint UprightPixel(const ImagingParameters& image, int line, int sample)
{
    const UPoint pixel = qor_utils::GetPixelCoordinatesLD(
        line, sample, image.origin, image.micronsPerPixel, image.samplingFreq, image.steerAngle,
        image.apexAngle, &image.probe, image.soundSpeed, image.lines, ImagingParameters::lineOffset,
        image.width, image.height, unflipped);
    return {pixel.x, pixel.y};
}

// The smallest rectangle that holds the first and the last sample of every line. It covers all
// lines, because the lowest point of a sector lies between its edges.
CRect Extent(const ImagingParameters& image)
{
    CRect extent(UprightPixel(image, 0, 0), CSize(0, 0));
    for (int line = 0; line < image.lines; ++line) {
        for (const int sample : {0, image.samples - 1}) {
            const CPoint pixel = UprightPixel(image, line, sample);
            extent.left = std::min(extent.left, pixel.x);
            extent.right = std::max(extent.right, pixel.x);
            extent.top = std::min(extent.top, pixel.y);
            extent.bottom = std::max(extent.bottom, pixel.y);
        }
    }
    return extent;
}

int DivideUp(int dividend, int divisor)
{
    return (dividend + divisor - 1) / divisor;
}

ImagingParameters WithoutScale(const CineDescription& description, CSize size)
{
    ImagingParameters image;
    image.probe = ProbeOf(description.stream);
    image.samplingFreq = description.stream.samplingFreq;
    image.soundSpeed = description.stream.soundSpeed;
    image.steerAngle = description.steerAngle;
    image.apexAngle = description.apexAngle;
    image.lines = description.stream.lines;
    image.samples = description.stream.samples;
    image.width = size.cx;
    image.height = size.cy;
    return image;
}

} // namespace

CPoint ImagingParameters::Pixel(int line, int sample) const
{
    const CPoint upright = UprightPixel(*this, line, sample);
    const PixelPoint displayed = Turn().Displayed({1.0 * upright.x, 1.0 * upright.y});
    return {static_cast<int>(displayed.x), static_cast<int>(displayed.y)};
}

UPoint ImagingParameters::ScanPosition(CPoint pixel) const
{
    const PixelPoint upright = Turn().Upright({1.0 * pixel.x, 1.0 * pixel.y});
    const UPoint position = CImgGeometry::GetUSCoordinates(
        static_cast<int>(upright.x), static_cast<int>(upright.y), origin, micronsPerPixel,
        samplingFreq, steerAngle, apexAngle, lines, &probe, soundSpeed, lineOffset, width, height,
        unflipped);
    // The library's result counts elements across the aperture, not the lines of the frame.
    const int elements = std::max(1, probe.elements);
    return {std::clamp(position.x * lines / elements, 0, std::max(0, lines - 1)),
            std::clamp(position.y, 0, std::max(0, samples - 1))};
}

FramePoint ImagingParameters::InFrame(const PixelPoint& pixel) const
{
    const PixelPoint upright = Turn().Upright(pixel);
    return {(upright.x - origin.x) * micronsPerPixel.x, (upright.y - origin.y) * micronsPerPixel.y};
}

PixelPoint ImagingParameters::PixelOf(const FramePoint& point) const
{
    return Turn().Displayed({origin.x + point.x / std::max(1, micronsPerPixel.x),
                             origin.y + point.y / std::max(1, micronsPerPixel.y)});
}

double ImagingParameters::Millimetres(CPoint a, CPoint b) const
{
    return std::hypot((a.x - b.x) * micronsPerPixel.x, (a.y - b.y) * micronsPerPixel.y) / 1000.0;
}

double ImagingParameters::DepthMillimetres(int sample1, int sample2) const
{
    return CImgGeometry::GetUSDistance(sample1, sample2, samplingFreq, soundSpeed) / 1000.0;
}

double ImagingParameters::DepthMillimetres() const
{
    return SampleMicrons() * samples / 1000.0;
}

double ImagingParameters::SampleMicrons() const
{
    return qor_utils::GetSampleSize(samplingFreq, soundSpeed);
}

std::vector<std::uint8_t> ImagingParameters::Mask() const
{
    std::vector<std::uint8_t> mask(static_cast<std::size_t>(width) *
                                   static_cast<std::size_t>(height));
    // The edges of the region are outside, so the last line and sample are.
    const CRect region(0, 0, probe.elements - DivideUp(probe.elements, std::max(1, lines)),
                       samples - 1);
    CImgGeometry::CreateImageMask(mask.data(), width, height, samplingFreq, steerAngle, lines,
                                  region, apexAngle, &probe, soundSpeed, origin, micronsPerPixel,
                                  UINT8_MAX);
    std::vector<std::uint8_t> displayed(mask.size());
    Turn().TurnPixels(mask.data(), displayed.data());
    return displayed;
}

qor_utils::ScanGeometry ImagingParameters::ToScanGeometry() const
{
    qor_utils::ScanGeometry geometry;
    geometry.probe = &probe;
    geometry.lines = lines;
    geometry.samples = samples;
    geometry.samplingFreq = samplingFreq;
    geometry.soundSpeed = soundSpeed;
    geometry.steerAngle = steerAngle;
    geometry.scanB = apexAngle;
    geometry.origin = origin;
    geometry.micronsPerPixel = micronsPerPixel;
    geometry.width = width;
    geometry.height = height;
    return geometry;
}

ZelProbe ProbeOf(const uDataDesc& stream)
{
    ZelProbe probe{};
    probe.type = stream.probeType;
    probe.elements = stream.elements;
    probe.pitch = stream.pitch;
    probe.radius = stream.radius;
    probe.sectorAngle = stream.sectorAngle;
    return probe;
}

ImagingParameters FitImage(const CineDescription& cine, CSize size, const Orientation& orientation)
{
    if (orientation.IsOnSide()) std::swap(size.cx, size.cy);
    ImagingParameters image = WithoutScale(cine, size);
    image.micronsPerPixel = {measuringScale, measuringScale};
    const CRect extent = Extent(image);

    const int roomX = std::max(1, image.width - 2 * margin);
    const int roomY = std::max(1, image.height - 2 * margin);
    const int microns = std::max(DivideUp(extent.Width() * measuringScale, roomX),
                                 DivideUp(extent.Height() * measuringScale, roomY));
    image.micronsPerPixel = {microns, microns};

    const CRect fitted = Extent(image);
    image.origin.x = (image.width - fitted.Width()) / 2 - fitted.left;
    image.origin.y = margin - fitted.top;
    image.orientation = orientation;
    return image;
}

ImagingParameters ZoomImage(const ImagingParameters& fitted, double zoom, const FramePoint& middle)
{
    ImagingParameters image = fitted;
    const int microns = std::max(1, static_cast<int>(std::lround(fitted.micronsPerPixel.x / zoom)));
    image.micronsPerPixel = {microns, microns};
    image.origin = {0, 0};
    const CRect extent = Extent(image);
    const int x = image.width / 2 - static_cast<int>(std::lround(middle.x / microns));
    const int y = image.height / 2 - static_cast<int>(std::lround(middle.y / microns));
    const auto within = [](int wanted, int begin, int end, int room, int otherwise) {
        if (end - begin + 2 * margin <= room) return otherwise;
        return std::clamp(wanted, room - margin - end, margin - begin);
    };
    image.origin.x = within(x, extent.left, extent.right, image.width,
                            (image.width - extent.Width()) / 2 - extent.left);
    image.origin.y = within(y, extent.top, extent.bottom, image.height, margin - extent.top);
    return image;
}

} // namespace exam
