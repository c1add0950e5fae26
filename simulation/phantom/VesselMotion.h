#pragma once

#include <phantom/PhantomSettings.h>

namespace simulation {

// The vessel's beat: its radius, the velocity on its axis and the way of the blood there, all in
// closed form, so that any time can be asked for.
class VesselMotion
{
public:
    explicit VesselMotion(const PhantomSettings& settings);

    double Radius(double time) const;   // of the lumen, mm
    double Velocity(double time) const; // on the axis, m/s
    double Travel(double time) const;   // the integral of the velocity from time 0 on, mm
    double MeanVelocity() const;        // on the axis over whole beats, m/s
    double LargestRadius() const { return m_radius + m_growth; }
    double SmallestRadius() const { return m_radius; }

    // The part of a beat, from its beginning to the peak velocity.
    static constexpr double systole = 0.15;

private:
    double m_beatsPerSecond;
    double m_radius; // in diastole, mm
    double m_growth; // of the radius in systole, mm
    double m_resting;
    double m_rise; // of the velocity in systole, m/s
};

} // namespace simulation
