#include <phantom/PhantomSettings.h>

#include <algorithm>
#include <array>

namespace simulation {

namespace {

PhantomSettings Curved()
{
    PhantomSettings s;
    s.acquisition = {.lines = 192,
                     .samples = 1024,
                     .samplingFreq = 5250000,
                     .probe = ProbeShape::curved,
                     .elements = 192,
                     .pitch = 330,
                     .radius = 60000};
    s.frequency = 3.5e6;
    s.aperture = 20;
    s.vessel = {{0, 150}, -30, 16, 0.08, 1.6, 0.9, 0.15};
    s.cyst = {{-22, 100}, 11, 8};
    s.wires = {{-5, 80}, {-5, 95}, {25, 170}, {25, 190}, {45, 170}};
    return s;
}

PhantomSettings Linear()
{
    PhantomSettings s;
    s.acquisition = {.lines = 192,
                     .samples = 768,
                     .samplingFreq = 13000000,
                     .probe = ProbeShape::linear,
                     .elements = 128,
                     .pitch = 300};
    s.frequency = 7.5e6;
    s.aperture = 9;
    s.vessel = {{0, 16}, -10, 6, 0.1, 0.9, 0.8, 0.2};
    s.cyst = {{9, 31}, 5, 3.5};
    s.wires = {{-14, 28}, {-14, 34}, {-14, 40}, {-6, 34}, {-6, 40}};
    return s;
}

PhantomSettings Phased()
{
    PhantomSettings s;
    s.acquisition = {.lines = 192,
                     .samples = 1024,
                     .samplingFreq = 4930000,
                     .probe = ProbeShape::phased,
                     .elements = 64,
                     .pitch = 300,
                     .sectorAngle = 80000};
    s.frequency = 2.5e6;
    s.aperture = 19.2;
    s.vessel = {{0, 85}, -35, 24, 0.12, 3, 1.1, 0.1};
    s.cyst = {{-20, 50}, 9, 6.5};
    s.wires = {{0, 35}, {0, 50}, {20, 120}, {20, 140}, {45, 120}};
    return s;
}

// Also false for a value that is no number.
bool Within(double value, double low, double high)
{
    return value >= low && value <= high;
}

bool IsPlace(PointMm point)
{
    return Within(point.x, -1000, 1000) && Within(point.y, -1000, 1000);
}

bool IsValidProbe(const Acquisition& a)
{
    if (!Within(a.elements, 1, 4096) || !Within(a.pitch, 1, 10000)) return false;
    switch (a.probe) {
    // The face is less than a half-circle.
    case ProbeShape::curved:
        return Within(a.radius, 1000, 1000000) && 1.0 * a.elements * a.pitch <= 3.0 * a.radius;
    case ProbeShape::linear: return true;
    case ProbeShape::phased: return Within(a.sectorAngle, 1000, 170000);
    default: return false;
    }
}

bool IsValidAcquisition(const Acquisition& a)
{
    return IsValidProbe(a) && Within(a.lines, 64, 256) && Within(a.samples, 512, 1024) &&
           Within(a.samplingFreq, 1000000, 100000000) && Within(a.soundSpeed, 1000, 2000) &&
           Within(a.frameRate, 1, 1000000);
}

bool IsValidVessel(const Vessel& v)
{
    return IsPlace(v.centre) && Within(v.tilt, -80, 80) && Within(v.diameter, 0.5, 60) &&
           Within(v.pulsation, 0, 0.5) && Within(v.wallThickness, 0.1, 10) &&
           Within(v.peakVelocity, -5, 5) && Within(v.restingVelocity, -5, 5);
}

bool IsValidCyst(const Cyst& c)
{
    return IsPlace(c.centre) && Within(c.semiAxisX, 0, 200) && Within(c.semiAxisY, 0, 200);
}

} // namespace

PhantomSettings DefaultSettings(ProbeShape probe)
{
    switch (probe) {
    case ProbeShape::curved: return Curved();
    case ProbeShape::phased: return Phased();
    default: return Linear();
    }
}

bool IsValid(const PhantomSettings& s)
{
    return IsValidAcquisition(s.acquisition) && IsValidVessel(s.vessel) && IsValidCyst(s.cyst) &&
           s.wires.size() <= 1000 && std::all_of(s.wires.begin(), s.wires.end(), IsPlace) &&
           Within(s.frequency, 1e6, 20e6) && Within(s.aperture, 1, 100) &&
           Within(s.attenuation, 0, 2) && Within(s.noiseLevel, -200, 0) &&
           Within(s.gainLimit, 0, 100) && Within(s.dynamicRange, 20, 120) &&
           Within(s.heartRate, 20, 300);
}

} // namespace simulation
