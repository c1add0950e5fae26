#pragma once

#include <cstdint>
#include <vector>

namespace simulation {

/// A position in millimetres from the image origin of docs/conversion-model.md: x to the right, y
/// downwards. The origin is the centre of curvature of a curved face, and the centre of the face of
/// other probes.
struct PointMm
{
    double x = 0;
    double y = 0;
};

/// The probes, numbered as in the description of a recorded frame.
enum class ProbeShape : int
{
    curved = 0,
    linear = 1,
    phased = 2,
};

/// The acquisition of a frame, in the integers and units in which a recording describes it.
struct Acquisition
{
    int lines = 192;       ///< 64 to 256, over the whole aperture
    int samples = 768;     ///< 512 to 1024 on a line
    int samplingFreq = 0;  ///< Hz
    int soundSpeed = 1540; ///< m/s
    ProbeShape probe = ProbeShape::linear;
    int elements = 0;
    int pitch = 0;         ///< microns
    int radius = 0;        ///< microns; of a curved probe, which is convex
    int sectorAngle = 0;   ///< thousandths of a degree; of a phased probe
    int frameRate = 30000; ///< frames in 1000 s
};

/// A straight vessel in the image plane. Blood flows along its axis towards the right; a negative
/// velocity is one towards the left.
struct Vessel
{
    PointMm centre;           ///< a point of the axis
    double tilt = 0;          ///< degrees from the x axis, positive when the right end lies deeper
    double diameter = 0;      ///< of the lumen in diastole, mm
    double pulsation = 0;     ///< the share of its diameter by which it grows in systole
    double wallThickness = 0; ///< mm
    double peakVelocity = 0;  ///< on the axis in systole, m/s
    double restingVelocity = 0; ///< on the axis in diastole, m/s
};

/// A region without scatterers and with little attenuation; its axes are those of the image.
struct Cyst
{
    PointMm centre;
    double semiAxisX = 0; ///< mm
    double semiAxisY = 0; ///< mm
};

/// All that makes a phantom. Two phantoms of equal settings are equal.
struct PhantomSettings
{
    Acquisition acquisition;
    double frequency = 0;     ///< centre frequency of the pulse, Hz
    double aperture = 0;      ///< active aperture that focuses a line, mm
    double attenuation = 0.5; ///< of tissue, dB per cm and MHz, one way
    double noiseLevel = -55;  ///< electronic noise at the face, dB relative to tissue
    double gainLimit = 55;    ///< the largest compensation of attenuation, dB
    double dynamicRange = 60; ///< dB between grey levels 0 and 255
    double heartRate = 72;    ///< beats a minute
    Vessel vessel;
    Cyst cyst;
    std::vector<PointMm> wires; ///< bright points
    std::uint32_t seed = 1;     ///< of the scatterers and the noise
};

/// A patient for this probe, in whom everything lies apart: the vessel rises to the right, so its
/// blood flows towards the probe.
PhantomSettings DefaultSettings(ProbeShape probe);

/// True when a phantom can be made: all numbers are finite, and within the limits that
/// docs/phantom.md lists.
bool IsValid(const PhantomSettings& settings);

} // namespace simulation
