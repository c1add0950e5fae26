#pragma once

#include <qor_imgproc/PixelConverter.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/PixelCoordinates.h>

#include <cmath>
#include <random>
#include <string>

constexpr ZelProbe sampleCurved{0, 188, 292, 26400, 0}; // the probe of the committed curved sample
constexpr int sampleFrequency = 14997059;
constexpr int sampleLines = 241;

constexpr ZelProbe linear{1, 128, 300, 0, 0};
constexpr ZelProbe phased{2, 64, 220, 0, 90000};

// All that a conversion is given but the position.
struct Scene
{
    ZelProbe probe;
    int lines = 0; // over the aperture
    int samplingFreq = 0;
    int soundSpeed = 1540;
    int scanA = 0;
    int scanB = 0;
    int scanC = 0;
    UPoint origin;
    UPoint scale;
    int width = 0;
    int height = 0;
    int flip = 0;
};

inline UPoint Forward(const Scene& s, int line, int sample)
{
    return qor_utils::GetPixelCoordinatesLD(line, sample, s.origin, s.scale, s.samplingFreq,
                                            s.scanA, s.scanB, &s.probe, s.soundSpeed, s.lines,
                                            s.scanC, s.width, s.height, s.flip);
}

inline UPoint Unflip(const Scene& s, UPoint p)
{
    if (s.flip & 1) p.x = s.width - p.x;
    if (s.flip & 2) p.y = s.height - p.y;
    return p;
}

inline ScanPixel Precise(const Scene& s, const UPoint& p, const URect& rect = {})
{
    ScanPixel out;
    const double a = s.scanA * qor_utils::radiansPerMillidegree;
    ScanConverter::GetPreciseUSCoordinates(p.x, p.y, &out.line, &out.sample, &out.lineFraction,
                                           &out.sampleFraction, rect, &s.probe, s.soundSpeed,
                                           s.scanA, s.scanB, s.lines, s.samplingFreq, s.origin,
                                           s.scale, std::sin(a), std::cos(a), false);
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

inline qor_utils::ConversionModel ModelOf(const Scene& s)
{
    const double a = s.scanA * qor_utils::radiansPerMillidegree;
    return {&s.probe, s.lines, s.samplingFreq, s.soundSpeed, s.scanB, std::sin(a), std::cos(a)};
}

// The same numbers in every run.
class Random
{
public:
    int Int(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    double Real(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(m_engine);
    }

private:
    std::mt19937 m_engine{20240917};
};

// A probe of the type with random settings, and an image of random place; the scale is left to the
// test.
Scene RandomScene(Random& random, int type);

// What tells one random scene from another, for messages.
std::string Describe(const Scene& s);
