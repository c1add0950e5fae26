#include "study/FrameScale.h"

#include "image/ImagingParameters.h"

#include <algorithm>

namespace exam {

namespace {

constexpr double micronsPerMillimetre = 1000;

qor_utils::ConversionModel ModelOf(const Acquisition& acquisition)
{
    const ZelProbe probe = ProbeOf(acquisition.stream);
    qor_utils::ScanGeometry geometry;
    geometry.probe = &probe;
    geometry.lines = acquisition.stream.lines;
    geometry.samples = acquisition.stream.samples;
    geometry.samplingFreq = acquisition.stream.samplingFreq;
    geometry.soundSpeed = acquisition.stream.soundSpeed;
    geometry.steerAngle = acquisition.steerAngle;
    geometry.scanB = acquisition.apexAngle;
    return qor_utils::ConversionModel(geometry);
}

MarkPoint Sum(const MarkPoint& a, const MarkPoint& b)
{
    return {a.x + b.x, a.y + b.y};
}

} // namespace

FrameScale::FrameScale(const Acquisition& acquisition) : m_model(ModelOf(acquisition)) {}

MarkPoint FrameScale::ToMillimetres(const MarkPoint& scan) const
{
    const qor_utils::MicronPoint microns = m_model.ToMicrons({scan.x, scan.y});
    return {microns.x / micronsPerMillimetre, microns.y / micronsPerMillimetre};
}

MarkPoint FrameScale::ToScan(const MarkPoint& millimetres) const
{
    const qor_utils::ScanPoint scan = m_model.ToScan(
        {millimetres.x * micronsPerMillimetre, millimetres.y * micronsPerMillimetre});
    return {scan.line, scan.sample};
}

bool MovePoints(Mark& mark, const Acquisition& acquisition, const MarkPoint& by)
{
    const bool isOnFrame = InfoOf(mark.kind).place == MarkPlace::frame;
    const FrameScale scale(acquisition);
    if (isOnFrame && !scale.IsKnown()) return false;
    std::ranges::transform(mark.points, mark.points.begin(), [&](const MarkPoint& point) {
        return isOnFrame ? scale.ToScan(Sum(scale.ToMillimetres(point), by)) : Sum(point, by);
    });
    return true;
}

} // namespace exam
