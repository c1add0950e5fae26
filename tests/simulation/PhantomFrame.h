#pragma once

#include <gtest/gtest.h>
#include <phantom/Phantom.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace simulation {

// A test that is done with the patient of each probe.
class PhantomTest : public testing::TestWithParam<ProbeShape>
{
protected:
    PhantomSettings m_settings = DefaultSettings(GetParam());
    const Phantom m_phantom{m_settings};
};

// A frame of a phantom, looked at by places in space.
class PhantomFrame
{
public:
    PhantomFrame(const Phantom& phantom, double time)
        : m_phantom(phantom), m_acquisition(phantom.Settings().acquisition),
          m_frame(phantom.Frame(time))
    {
    }

    const PhantomSettings& Settings() const { return m_phantom.Settings(); }

    int LevelAt(int line, int sample) const
    {
        return m_frame.at(static_cast<std::size_t>(line * m_acquisition.samples + sample));
    }
    // The level of the line and sample that are nearest.
    int LevelAt(PointMm point) const
    {
        const ScanPosition position = m_phantom.PositionOf(point);
        return LevelAt(static_cast<int>(std::lround(position.line)),
                       static_cast<int>(std::lround(position.sample)));
    }
    // The mean level along the vessel's middle part, at a distance from its axis, mm.
    double LevelBesideAxis(double across) const
    {
        const Vessel& vessel = m_phantom.Settings().vessel;
        const double tilt = vessel.tilt / 180 * std::numbers::pi;
        double sum = 0;
        for (int i = -50; i <= 50; ++i) {
            const double along = i * vessel.diameter / 50;
            sum += LevelAt({vessel.centre.x + along * std::cos(tilt) - across * std::sin(tilt),
                            vessel.centre.y + along * std::sin(tilt) + across * std::cos(tilt)});
        }
        return sum / 101;
    }
    // The mean level on an ellipse that is so many times as large as the cyst.
    double LevelRoundCyst(double size) const
    {
        const Cyst& cyst = m_phantom.Settings().cyst;
        double sum = 0;
        for (int i = 0; i < 360; ++i) {
            const double angle = i / 180.0 * std::numbers::pi;
            sum += LevelAt({cyst.centre.x + size * cyst.semiAxisX * std::cos(angle),
                            cyst.centre.y + size * cyst.semiAxisY * std::sin(angle)});
        }
        return sum / 360;
    }

private:
    const Phantom& m_phantom;
    Acquisition m_acquisition;
    std::vector<unsigned char> m_frame;
};

// Finds where a profile that starts at `from` first reaches a level; `to` when it never does.
template <class Profile>
double Crossing(const Profile& profile, double level, double from, double to)
{
    constexpr int steps = 2000;
    for (int i = 0; i < steps; ++i) {
        const double at = from + (to - from) * i / steps;
        if (profile(at) >= level) return at;
    }
    return to;
}

} // namespace simulation
