#pragma once

#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/ScanGeometry.h>
#include <test_support/Random.h>

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
Scene RandomScene(Random& random, int type);

// Identifies a random scene in messages.
std::string Describe(const Scene& s);
