#include "ScanGrid.h"

#include "Arithmetic.h"

#include <algorithm>

namespace simulation {

ScanGrid::ScanGrid(const Acquisition& acquisition)
    : m_isFan(acquisition.probe != ProbeShape::linear), m_centre((acquisition.lines - 1) / 2.0),
      m_sampleSize(acquisition.soundSpeed * 1e3 / (2.0 * acquisition.samplingFreq))
{
    const double face = acquisition.elements * (acquisition.pitch / 1000.0);
    m_lineStep = face / acquisition.lines;
    if (acquisition.probe == ProbeShape::curved) {
        m_face = acquisition.radius / 1000.0;
        m_lineStep /= m_face;
    }
    if (acquisition.probe == ProbeShape::phased)
        m_lineStep = acquisition.sectorAngle / 1000.0 / 180 * std::numbers::pi / acquisition.lines;
}

ScanPosition ScanGrid::ToScan(PointMm point) const
{
    if (!m_isFan) return {point.x / m_lineStep + m_centre, point.y / m_sampleSize};
    const double range = std::sqrt(point.x * point.x + point.y * point.y);
    return {LineAngle(point) / m_lineStep + m_centre, (range - m_face) / m_sampleSize};
}

PointMm ScanGrid::ToPoint(ScanPosition position) const
{
    const double offset = (position.line - m_centre) * m_lineStep;
    const double depth = position.sample * m_sampleSize;
    if (!m_isFan) return {offset, depth};
    const SineCosine turn = OfRadians(offset);
    return {(m_face + depth) * turn.sine, (m_face + depth) * turn.cosine};
}

double ScanGrid::LineSpacing(double depth) const
{
    return std::max(m_isFan ? (m_face + depth) * m_lineStep : m_lineStep, 1e-3);
}

double ScanGrid::LineAngle(PointMm point) const
{
    return m_isFan ? AngleFromAxis(point.x, point.y) : 0;
}

} // namespace simulation
