#pragma once

// These are studies for tests: recordings of every kind of probe, and marks on them.

#include "study/Study.h"

#include <qor_utils/ZelProbe.h>

#include <cmath>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace study_samples {

using namespace exam;

constexpr int lines = 128;
constexpr double centre = (lines - 1) / 2.0;
constexpr double sampleSize = 1540e3 / (2 * 40e6); // millimetres

inline Acquisition AcquisitionOf(int probeType)
{
    Acquisition acquisition;
    acquisition.stream.lines = lines;
    acquisition.stream.samples = 6000;
    acquisition.stream.bitsPerSample = 8;
    acquisition.stream.samplingFreq = 40'000'000;
    acquisition.stream.soundSpeed = 1540;
    acquisition.stream.probeType = probeType;
    acquisition.stream.elements = 128;
    acquisition.stream.pitch = 400;
    acquisition.stream.frameRate = 30'000;
    return acquisition;
}

inline Acquisition Linear(int steerAngle = 0)
{
    Acquisition acquisition = AcquisitionOf(qor_utils::linearProbe);
    acquisition.steerAngle = steerAngle;
    return acquisition;
}

inline Acquisition Curved(int steerAngle = 0)
{
    Acquisition acquisition = AcquisitionOf(qor_utils::curvedProbe);
    acquisition.stream.radius = 60'000;
    acquisition.steerAngle = steerAngle;
    return acquisition;
}

inline Acquisition Phased(int apexAngle = 0)
{
    Acquisition acquisition = AcquisitionOf(qor_utils::phasedProbe);
    acquisition.stream.sectorAngle = 90'000;
    acquisition.apexAngle = apexAngle;
    return acquisition;
}

constexpr double Radians(double millidegrees)
{
    return millidegrees / 1000 * std::numbers::pi / 180;
}

// The scan position of a place in millimetres, by the formulas of docs/conversion-model.md written
// out for each probe.
inline MarkPoint ScanOf(const Acquisition& acquisition, double x, double y)
{
    const uDataDesc& stream = acquisition.stream;
    const double steer = Radians(acquisition.steerAngle);
    const double aperture = stream.elements * stream.pitch / 1000.0;
    if (stream.probeType == qor_utils::linearProbe) {
        const double depth = y / std::cos(steer);
        return {(x - depth * std::sin(steer)) / (aperture / lines) + centre, depth / sampleSize};
    }
    if (stream.probeType == qor_utils::curvedProbe) {
        const double radius = stream.radius / 1000.0;
        return {(std::atan2(x, y) - steer) / (aperture / radius / lines) + centre,
                (std::hypot(x, y) - radius) / sampleSize};
    }
    const double sector = Radians(stream.sectorAngle + acquisition.apexAngle);
    const double apex = acquisition.apexAngle == 0 ? 0 : aperture / 2 / std::tan(sector / 2);
    const double angle = std::atan2(x, y + apex);
    return {angle / (sector / lines) + centre, y / std::cos(angle) / sampleSize};
}

// The middle of the probe's image, far enough from its face for marks of 60 mm.
inline MarkPoint MiddleOf(const Acquisition& acquisition)
{
    return {0, 60 + acquisition.stream.radius / 1000.0};
}

// A mark through these places, in millimetres from the middle of the image.
inline Mark MarkThrough(const Acquisition& acquisition, MarkKind kind,
                        const std::vector<MarkPoint>& places)
{
    Mark mark;
    mark.kind = kind;
    const MarkPoint middle = MiddleOf(acquisition);
    for (const MarkPoint& place : places)
        mark.points.push_back(ScanOf(acquisition, middle.x + place.x, middle.y + place.y));
    return mark;
}

inline std::vector<Acquisition> AllProbes()
{
    return {Linear(), Linear(12'000), Curved(), Curved(-5'000), Phased(), Phased(10'000)};
}

inline StudyObject Recording(const std::wstring& image, const Acquisition& acquisition = Curved())
{
    StudyObject object;
    object.image = image;
    object.acquisition = acquisition;
    return object;
}

inline Mark On(const std::wstring& object, Mark mark, std::wstring text = L"")
{
    mark.object = object;
    mark.text = std::move(text);
    return mark;
}

inline Mark StripMark(MarkKind kind, std::vector<MarkPoint> points)
{
    Mark mark;
    mark.kind = kind;
    mark.points = std::move(points);
    return mark;
}

} // namespace study_samples
