#pragma once

#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/ScanGeometry.h>
#include <test_support/Random.h>

#include <algorithm>
#include <string>

using test_support::Random;

constexpr ZelProbe sampleCurved{qor_utils::curvedProbe, 188, 292, 26400,
                                0}; // the probe of the committed curved sample
constexpr int sampleFrequency = 14997059;
constexpr int sampleLines = 241;

constexpr ZelProbe linear{qor_utils::linearProbe, 128, 300, 0, 0};
constexpr ZelProbe phased{qor_utils::phasedProbe, 64, 220, 0, 90000};

// All input of a conversion but the position, with a probe of its own.
struct Scene
{
    ZelProbe probe;
    int lines = 0; // over the aperture
    int samplingFreq = 0;
    int soundSpeed = 1540;
    int steerAngle = 0;
    int scanB = 0;
    int lineOffset = 0;
    UPoint origin;
    UPoint scale;
    int width = 0;
    int height = 0;
    int flip = 0;
};

// The scene of the committed curved sample.
inline Scene SampleScene()
{
    return {sampleCurved, sampleLines, sampleFrequency, 1540, 0, 0, 0, {640, -100}, {100, 100}};
}

// The result points to the probe of the scene.
inline qor_utils::ScanGeometry GeometryOf(const Scene& s, int samples = 0)
{
    return {&s.probe, s.lines,  samples, s.samplingFreq, s.soundSpeed, s.steerAngle, s.scanB,
            0,        s.origin, s.scale, s.width,        s.height,     s.flip};
}

inline qor_utils::ConversionModel ModelOf(const Scene& s)
{
    return qor_utils::ConversionModel(GeometryOf(s));
}

inline UPoint Forward(const Scene& s, int line, int sample)
{
    return qor_utils::GetPixelCoordinatesLD(line, sample, s.origin, s.scale, s.samplingFreq,
                                            s.steerAngle, s.scanB, &s.probe, s.soundSpeed, s.lines,
                                            s.lineOffset, s.width, s.height, s.flip);
}

inline UPoint Unflip(const Scene& s, UPoint p)
{
    if (s.flip & qor_utils::flipLeftRight) p.x = s.width - p.x;
    if (s.flip & qor_utils::flipTopBottom) p.y = s.height - p.y;
    return p;
}

// The exact inverse: whole numbers and sixteenths above them.
struct ScanPixel
{
    int line = 0;
    int sample = 0;
    unsigned int lineFraction = 0;
    unsigned int sampleFraction = 0;
};

inline ScanPixel Precise(const Scene& s, const UPoint& p, const URect& rect = {})
{
    ScanPixel out;
    const auto steering = qor_utils::Steering::Of(s.steerAngle);
    ScanConverter::GetPreciseUSCoordinates(p.x, p.y, &out.line, &out.sample, &out.lineFraction,
                                           &out.sampleFraction, rect, &s.probe, s.soundSpeed,
                                           s.steerAngle, s.scanB, s.lines, s.samplingFreq, s.origin,
                                           s.scale, steering.sine, steering.cosine, false);
    return out;
}

inline double LineOf(const ScanPixel& p)
{
    return p.line + p.lineFraction / 16.0;
}
inline double SampleOf(const ScanPixel& p)
{
    return p.sample + p.sampleFraction / 16.0;
}

// A probe of the type with random settings, and an image at a random place. The test chooses the
// scale.
inline Scene RandomScene(Random& random, int type)
{
    Scene s;
    s.probe = {type, random.Int(2, 300), random.Int(100, 600), random.Int(8000, 80000),
               random.Int(10000, 120000)};
    // The fan is less than a full turn, and less than half a turn for a concave face.
    const double turn = static_cast<double>(s.probe.elements) * s.probe.pitch / s.probe.radius;
    if (type == 0 && turn > 6) s.probe.elements = std::max(1, s.probe.elements / 4);
    if (type == 0 && turn < 3 && random.Int(0, 1)) s.probe.radius = -s.probe.radius;
    s.lines = random.Int(1, 512);
    s.samplingFreq = random.Int(1000000, 20000000);
    s.soundSpeed = random.Int(1000, 2000);
    s.steerAngle = random.Int(-30000, 30000);
    if (type == 2) s.scanB = random.Int(0, 1) * random.Int(1, 40000);
    s.lineOffset = random.Int(-20, 20);
    s.width = random.Int(100, 2000);
    s.height = random.Int(100, 2000);
    s.origin = {random.Int(-500, 2000), random.Int(-500, 2000)};
    s.flip = random.Int(0, 3);
    return s;
}

// Identifies a random scene in messages.
inline std::string Describe(const Scene& s)
{
    return "type " + std::to_string(s.probe.type) + " elements " +
           std::to_string(s.probe.elements) + " radius " + std::to_string(s.probe.radius) +
           " lines " + std::to_string(s.lines) + " scanA " + std::to_string(s.steerAngle) +
           " scanB " + std::to_string(s.scanB) + " flip " + std::to_string(s.flip);
}
