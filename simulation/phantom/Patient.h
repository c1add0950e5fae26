#pragma once

#include "EchoField.h"
#include "Random.h"
#include "VesselMotion.h"

#include <vector>

namespace simulation {

// A scatterer of the blood. Its place across the vessel is one in the unit disc: it keeps its share
// of the radius when the vessel grows.
struct BloodCell
{
    double along;    // mm along the axis at time 0, from the vessel's centre
    double across;   // share of the radius in the image plane, positive downwards
    double velocity; // share of the velocity on the axis, by its distance from it
};

// A scatterer of the wall or of the tissue round it, which moves with the wall.
struct WallCell
{
    double along;
    double beyond; // mm from the lumen in diastole
    double side;   // 1 below the axis, -1 above
    float amplitude;
};

// The scatterers of a phantom, and where they are at a time.
class Patient
{
public:
    explicit Patient(const PhantomSettings& settings);

    const ScanGrid& Grid() const { return m_grid; }
    const PointSpread& Spread() const { return m_spread; }
    const VesselMotion& Motion() const { return m_motion; }

    // The echoes of all that is at rest: tissue and wires. They are made anew by each call.
    std::vector<Echo> RestingEchoes() const;

    // The echoes of wall and blood at a time, in the order in which they are added up.
    std::vector<Echo> MovingEchoes(double time) const;

    // True in the cyst, and in the vessel as it is in diastole.
    bool IsFluid(PointMm point) const;

    const std::vector<BloodCell>& Blood() const { return m_blood; }
    // So many moving scatterers lie on a square millimetre.
    double Density() const { return m_density; }
    // The place along the axis of a blood cell, mm, when the blood on the axis went as far as this.
    // A cell that leaves the vessel at one end enters it at the other.
    double AlongAt(const BloodCell& cell, double travel) const;

    // The direction of the vessel towards its right end, and the one across it downwards.
    PointMm Axis() const { return m_axis; }
    PointMm Normal() const { return {-m_axis.y, m_axis.x}; }
    PointMm Place(double along, double across) const;

private:
    bool IsInCyst(PointMm point) const;
    double DistanceFromAxis(PointMm point) const;
    double MovingLayer() const;
    double VisibleHalfLength() const;
    void MakeBlood(Random& random);
    void MakeWall(Random& random);
    Echo EchoAt(PointMm place, double amplitude) const;

    PhantomSettings m_settings;
    ScanGrid m_grid;
    PointSpread m_spread;
    VesselMotion m_motion;
    PointMm m_axis;
    double m_halfLength = 0; // of the vessel as far as it is seen
    double m_density = 0;
    std::vector<BloodCell> m_blood;
    std::vector<WallCell> m_wall;
};

} // namespace simulation
