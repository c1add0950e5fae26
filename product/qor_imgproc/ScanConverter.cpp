#include "qor_imgproc/ScanConverter.h"

#include <base/WrapArithmetic.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/ScanGeometry.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr double positionLimit = 1 << 26; // sixteenths still fit into 32 bits

// A position rounded downwards, and the sixteenths above it.
struct Sixteenths
{
    int whole = -1;
    unsigned int fraction = 0;
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
    return {base::wrap::Saturate(std::int64_t{sixteenths >> 4} - corner),
            static_cast<unsigned int>(sixteenths & 15)};
}

template <class T>
void Store(T* destination, T value)
{
    if (destination) *destination = value;
}

} // namespace

void ScanConverter::GetPreciseUSCoordinates(
    int x, int y, int* line, int* sample, unsigned int* lineFraction, unsigned int* sampleFraction,
    const URect& lineSampleRect, const ZelProbe* probe, int soundSpeed, int steerAngle, int scanB,
    int lines, int samplingFreq, const UPoint& origin, const UPoint& micronsPerPixel,
    double sinSteer, double cosSteer, bool /*fine*/)
{
    qor_utils::ScanGeometry geometry;
    geometry.probe = micronsPerPixel.x != 0 && micronsPerPixel.y != 0 ? probe : nullptr;
    geometry.lines = lines;
    geometry.samplingFreq = samplingFreq;
    geometry.soundSpeed = soundSpeed;
    geometry.steerAngle = steerAngle;
    geometry.scanB = scanB;
    const qor_utils::ConversionModel model(geometry, {sinSteer, cosSteer});
    const qor_utils::ScanPoint scan =
        model.ToScan({(static_cast<double>(x) - origin.x) * micronsPerPixel.x,
                      (static_cast<double>(y) - origin.y) * micronsPerPixel.y});
    Sixteenths preciseLine;
    Sixteenths preciseSample;
    const bool isPosition = !std::isnan(scan.line) && !std::isnan(scan.sample);
    if (isPosition && model.Shape() != qor_utils::ScanShape::none) {
        preciseLine = ToSixteenths(scan.line, lineSampleRect.left);
        preciseSample = ToSixteenths(scan.sample, lineSampleRect.top);
    }
    Store(line, preciseLine.whole);
    Store(sample, preciseSample.whole);
    Store(lineFraction, preciseLine.fraction);
    Store(sampleFraction, preciseSample.fraction);
}
