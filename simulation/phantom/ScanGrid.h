#pragma once

#include <phantom/Phantom.h>

namespace simulation {

// The lines and samples of a frame in space, as docs/conversion-model.md lays them out without
// steering, virtual apex and line offset. Millimetres throughout.
class ScanGrid
{
public:
    explicit ScanGrid(const Acquisition& acquisition);

    ScanPosition ToScan(PointMm point) const;
    PointMm ToPoint(ScanPosition position) const;

    double SampleSize() const { return m_sampleSize; }
    // The distance between neighbouring lines at a depth; at least a thousandth.
    double LineSpacing(double depth) const;
    // The turn of the line through a point from the y axis towards x, in radians.
    double LineAngle(PointMm point) const;

private:
    bool m_isFan;
    double m_centre;     // the line in the middle
    double m_sampleSize; // millimetres
    double m_face = 0;   // from the origin to a curved face
    double m_lineStep;   // radians, or millimetres of a linear probe
};

} // namespace simulation
