// The vessel in frames over a heart beat, and what stays the same from frame to frame.
#include "PhantomFrame.h"

namespace simulation {

namespace {

// The distance from the axis at which the blood ends on one side: midway to the brightness of the
// wall.
double RadiusOnSide(const PhantomFrame& frame, const Vessel& vessel, double side)
{
    const auto profile = [&](double across) { return frame.LevelBesideAxis(side * across); };
    const double blood = profile(0);
    double wall = blood;
    const double radius = vessel.diameter / 2;
    for (int i = 0; i <= 100; ++i)
        wall = std::max(wall, profile(radius * (0.8 + 0.004 * i) + vessel.wallThickness));
    return Crossing(profile, (blood + wall) / 2, 0, 2 * radius);
}

TEST_P(PhantomTest, TheVesselIsDarkBetweenBrightWalls)
{
    const Vessel& vessel = m_settings.vessel;
    const PhantomFrame frame(m_phantom, 0.5);
    const double radius = m_phantom.VesselDiameter(0.5) / 2;
    const double tissue = frame.LevelBesideAxis(-radius - 3 * vessel.wallThickness);
    EXPECT_LT(frame.LevelBesideAxis(0), tissue - 60);
    EXPECT_GT(frame.LevelBesideAxis(-radius - 0.8 * vessel.wallThickness), tissue + 10);
    EXPECT_GT(frame.LevelBesideAxis(radius + 0.8 * vessel.wallThickness), tissue + 10);
}

// The echoes of a wall reach into the lumen by half of the point spread, so that the lumen looks
// smaller by the same amount at all times. Speckle at the wall moves the edge by a part of that.
TEST_P(PhantomTest, BothWallsMoveWithTheDiameter)
{
    const double beat = 60 / m_settings.heartRate;
    const double wavelength = 1540e3 / m_settings.frequency;
    const Vessel& vessel = m_settings.vessel;
    double least[] = {1e9, 1e9};
    double most[] = {-1e9, -1e9};
    for (int i = 0; i < 12; ++i) {
        const double time = 7 + beat * i / 12;
        const PhantomFrame frame(m_phantom, time);
        for (const int side : {0, 1}) {
            const double missing =
                m_phantom.VesselDiameter(time) / 2 - RadiusOnSide(frame, vessel, 2 * side - 1);
            least[side] = std::min(least[side], missing);
            most[side] = std::max(most[side], missing);
        }
    }
    for (const int side : {0, 1}) {
        EXPECT_GT(least[side], 0.3 * wavelength);
        EXPECT_LT(most[side], 1.6 * wavelength);
        EXPECT_LT(most[side] - least[side], 0.25 * vessel.pulsation * vessel.diameter / 2);
    }
}

TEST_P(PhantomTest, TheDiameterIsThatOfTheSettings)
{
    const Vessel& vessel = m_settings.vessel;
    double least = 1e9;
    double most = 0;
    for (int i = 0; i < 1000; ++i) {
        const double diameter = m_phantom.VesselDiameter(i / 1000.0);
        least = std::min(least, diameter);
        most = std::max(most, diameter);
        EXPECT_NEAR(m_phantom.VesselDiameter(i / 1000.0 + 60 / m_settings.heartRate), diameter,
                    1e-9);
    }
    EXPECT_NEAR(least, vessel.diameter, 0.01 * vessel.diameter);
    EXPECT_NEAR(most, vessel.diameter * (1 + vessel.pulsation), 1e-3);
    const double diameter = m_phantom.VesselDiameter(0.1);
    EXPECT_NEAR(m_phantom.VesselArea(0.1), std::numbers::pi / 4 * diameter * diameter, 1e-9);
}

// The correlation of two frames on a band round a distance from the axis.
double Correlation(const PhantomFrame& a, const PhantomFrame& b, double across, double half)
{
    double sums[5] = {};
    const auto add = [&](double x, double y) {
        const double terms[5] = {x, y, x * x, y * y, x * y};
        for (int i = 0; i < 5; ++i)
            sums[i] += terms[i];
    };
    const Vessel& vessel = a.Settings().vessel;
    const double tilt = vessel.tilt / 180 * std::numbers::pi;
    int count = 0;
    for (int i = -100; i <= 100; ++i)
        for (int j = -20; j <= 20; ++j) {
            const double along = i * vessel.diameter / 100;
            const double aside = across + j * half / 20;
            const PointMm place{vessel.centre.x + along * std::cos(tilt) - aside * std::sin(tilt),
                                vessel.centre.y + along * std::sin(tilt) + aside * std::cos(tilt)};
            add(a.LevelAt(place), b.LevelAt(place));
            ++count;
        }
    for (double& sum : sums)
        sum /= count;
    return (sums[4] - sums[0] * sums[1]) /
           std::sqrt((sums[2] - sums[0] * sums[0]) * (sums[3] - sums[1] * sums[1]));
}

// There is no noise, so nothing but motion changes a frame.
TEST_P(PhantomTest, FlowDecorrelatesAndTissueDoesNot)
{
    PhantomSettings settings = m_settings;
    settings.noiseLevel = -200;
    settings.vessel.restingVelocity = 0;
    const double diastole = 0.75 * 60 / settings.heartRate; // the blood stands nearly still
    const Phantom phantom(settings);
    const PhantomFrame first(phantom, phantom.SystoleTime());
    const PhantomFrame second(phantom, phantom.SystoleTime() + 1.0 / 30);
    const double diameter = settings.vessel.diameter;
    EXPECT_LT(Correlation(first, second, 0, diameter / 4), 0.3);
    EXPECT_EQ(Correlation(first, first, 0, diameter / 4), 1);
    EXPECT_GT(Correlation(first, second, -1.6 * diameter, diameter / 4), 0.999);
    const PhantomFrame third(phantom, diastole);
    const PhantomFrame fourth(phantom, diastole + 1e-4);
    EXPECT_GT(Correlation(third, fourth, 0, diameter / 4), 0.9);
}

} // namespace

} // namespace simulation
