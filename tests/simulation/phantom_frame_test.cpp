// A frame of the phantom shows its tissue and its vessel in their places.
#include "phantom/Patient.h"
#include "PhantomFrame.h"

#include <qor_imgproc/ConvertFrame.h>
#include <qor_utils/ConversionModel.h>

#include <random>

namespace simulation {

namespace {

ZelProbe ProbeOf(const Acquisition& a)
{
    return {static_cast<int>(a.probe), a.elements, a.pitch, a.radius, a.sectorAngle};
}

// The result has no image. The probe has to outlive it.
qor_utils::ScanGeometry GeometryOf(const Acquisition& acquisition, const ZelProbe& probe)
{
    qor_utils::ScanGeometry geometry;
    geometry.probe = &probe;
    geometry.lines = acquisition.lines;
    geometry.samples = acquisition.samples;
    geometry.samplingFreq = acquisition.samplingFreq;
    geometry.soundSpeed = acquisition.soundSpeed;
    return geometry;
}

// The centre of what is brighter than 200 near a place of a picture.
template <class Level>
ScanPosition CentreOfLight(const Level& level, ScanPosition place)
{
    double sum = 0;
    ScanPosition centre;
    for (int x = -7; x <= 7; ++x)
        for (int y = -7; y <= 7; ++y) {
            const int column = static_cast<int>(std::lround(place.line)) + x;
            const int row = static_cast<int>(std::lround(place.sample)) + y;
            const double light = std::max(level(column, row) - 200, 0);
            sum += light;
            centre.line += light * column;
            centre.sample += light * row;
        }
    return {centre.line / sum, centre.sample / sum};
}

TEST_P(PhantomTest, PositionsAreThoseOfTheConversionModel)
{
    const ZelProbe probe = ProbeOf(m_settings.acquisition);
    const qor_utils::ConversionModel model(GeometryOf(m_settings.acquisition, probe));
    std::mt19937 random(5);
    std::uniform_real_distribution<double> share(0, 1);
    for (int i = 0; i < 1000; ++i) {
        const qor_utils::ScanPoint scan{share(random) * m_settings.acquisition.lines,
                                        1 + share(random) * m_settings.acquisition.samples};
        const qor_utils::MicronPoint place = model.ToMicrons(scan);
        const ScanPosition position = m_phantom.PositionOf({place.x / 1000, place.y / 1000});
        ASSERT_NEAR(position.line, scan.line, 1e-6);
        ASSERT_NEAR(position.sample, scan.sample, 1e-6);
    }
}

// The speckle below a wire moves the middle of its light by a tenth of a sample and of a line.
TEST_P(PhantomTest, WiresAppearAtTheirLineAndSample)
{
    const PhantomFrame frame(m_phantom, 0.3);
    for (const PointMm wire : m_settings.wires) {
        const ScanPosition truth = m_phantom.PositionOf(wire);
        const ScanPosition seen =
            CentreOfLight([&](int line, int sample) { return frame.LevelAt(line, sample); }, truth);
        EXPECT_NEAR(seen.line, truth.line, 0.3) << wire.x << ", " << wire.y;
        EXPECT_NEAR(seen.sample, truth.sample, 0.3) << wire.x << ", " << wire.y;
    }
}

// A tenth of a line is up to half a pixel, and pixels take the nearest sixteenth of a line.
TEST_P(PhantomTest, WiresAppearAtTheirPixel)
{
    const ZelProbe probe = ProbeOf(m_settings.acquisition);
    qor_utils::ScanGeometry geometry = GeometryOf(m_settings.acquisition, probe);
    geometry.width = 1000;
    geometry.height = 1000;
    const int micronsPerPixel = GetParam() == ProbeShape::linear ? 80 : 250;
    geometry.micronsPerPixel = {micronsPerPixel, micronsPerPixel};
    geometry.origin = {500, 10 - probe.radius / micronsPerPixel};
    std::vector<unsigned char> image(1000 * 1000);
    qor_imgproc::ConvertFrame(geometry, m_phantom.Frame(0.3).data(), image.data());
    for (const PointMm wire : m_settings.wires) {
        const ScanPosition truth{geometry.origin.x + wire.x * 1000 / micronsPerPixel,
                                 geometry.origin.y + wire.y * 1000 / micronsPerPixel};
        const ScanPosition seen = CentreOfLight(
            [&](int x, int y) { return image.at(static_cast<std::size_t>(y * 1000 + x)); }, truth);
        EXPECT_NEAR(seen.line, truth.line, 1) << wire.x << ", " << wire.y;
        EXPECT_NEAR(seen.sample, truth.sample, 1) << wire.x << ", " << wire.y;
    }
}

// Echoes from beside it reach into the cyst by up to half of a beam width, so it looks smaller.
TEST_P(PhantomTest, TheCystIsDarkAndHasItsSize)
{
    const PhantomFrame frame(m_phantom, 0.3);
    const auto profile = [&](double size) { return frame.LevelRoundCyst(size); };
    const double inside = profile(0.5);
    const double outside = (profile(1.3) + profile(1.35) + profile(1.4)) / 3;
    EXPECT_LT(inside, 15);
    EXPECT_GT(outside, 100);
    const double edge = Crossing(profile, (inside + outside) / 2, 0.5, 1.5);
    EXPECT_GT(edge, 0.88);
    EXPECT_LT(edge, 1);
}

// The expected gain is what the echoes do not lose in the cyst on their way there and back. The
// mean of a hundred speckles is known to half a decibel.
TEST_P(PhantomTest, WhatLiesBehindTheCystIsBrighter)
{
    const PhantomFrame frame(m_phantom, 0.3);
    const ScanPosition centre = m_phantom.PositionOf(m_settings.cyst.centre);
    const double sampleMm = 1540e3 / (2.0 * m_settings.acquisition.samplingFreq);
    const double half = m_settings.cyst.semiAxisY / sampleMm;
    const auto meanBelow = [&](int firstLine) {
        double sum = 0;
        for (int line = firstLine; line < firstLine + 12; ++line)
            for (int sample = 15; sample < 115; ++sample)
                sum += frame.LevelAt(line, static_cast<int>(centre.sample + half) + sample);
        return sum / 1200;
    };
    const int middle = static_cast<int>(std::lround(centre.line)) - 6;
    const double decibels =
        0.9 * 2 * m_settings.attenuation * m_settings.frequency / 1e6 * (2 * half * sampleMm / 10);
    const double levels = decibels / m_settings.dynamicRange * 255;
    EXPECT_NEAR(meanBelow(middle) - meanBelow(middle - 32), levels, 8);
}

struct Moments
{
    double mean = 0;
    double deviation = 0;
    double power = 0;
};

// The amplitudes of the echoes at rest, where there is nothing but tissue: four patients' worth.
Moments SpeckleOf(PhantomSettings settings)
{
    Moments moments;
    int count = 0;
    const int first = settings.acquisition.probe == ProbeShape::phased ? 150 : 20;
    settings.wires.clear();
    for (settings.seed = 1; settings.seed < 5; ++settings.seed) {
        const Patient patient(settings);
        EchoField field(settings.acquisition.lines, settings.acquisition.samples);
        for (const Echo& echo : patient.RestingEchoes())
            field.Add(echo, patient.Spread());
        for (int line = 8; line < 96; ++line)
            for (int sample = first; sample < first + 120; ++sample) {
                const float* value = field.Line(line) + static_cast<std::ptrdiff_t>(2 * sample);
                const double power = value[0] * value[0] + value[1] * value[1];
                moments.mean += std::sqrt(power);
                moments.power += power;
                ++count;
            }
    }
    moments.mean /= count;
    moments.power /= count;
    moments.deviation = std::sqrt(moments.power - moments.mean * moments.mean);
    return moments;
}

// Rayleigh's distribution has the ratio sqrt(pi / (4 - pi)). A thousand independent speckles tell
// it to 5 in 100.
TEST_P(PhantomTest, SpeckleIsFullyDeveloped)
{
    const Moments moments = SpeckleOf(m_settings);
    EXPECT_NEAR(moments.mean / moments.deviation, 1.913, 0.1);
    EXPECT_NEAR(moments.power, 1, 0.1);
}

// The correlation of levels that lie `lines` apart, for tissue at these samples.
double LateralCorrelation(const PhantomFrame& frame, int lines, int firstSample)
{
    double sum = 0;
    double squares = 0;
    double products = 0;
    int count = 0;
    for (int line = 3; line < 90; ++line)
        for (int sample = firstSample; sample < firstSample + 100; ++sample) {
            const double level = frame.LevelAt(line, sample);
            sum += level;
            squares += level * level;
            products += level * frame.LevelAt(line + lines, sample);
            ++count;
        }
    const double mean = sum / count;
    return (products / count - mean * mean) / (squares / count - mean * mean);
}

TEST(PhantomSpeckle, GrowsAcrossTheLinesWithDepth)
{
    PhantomSettings settings = DefaultSettings(ProbeShape::linear);
    settings.noiseLevel = -200;
    settings.wires.clear();
    const Phantom phantom(settings);
    const PhantomFrame frame(phantom, 0);
    EXPECT_LT(LateralCorrelation(frame, 2, 20), 0.2);
    EXPECT_GT(LateralCorrelation(frame, 2, 650), 0.35);
}

// The gain that makes up for attenuation lifts the noise, which the cyst shows.
TEST(PhantomNoise, GrowsWithDepth)
{
    PhantomSettings settings = DefaultSettings(ProbeShape::linear);
    settings.noiseLevel = -45;
    const auto levelInCyst = [&](double y) {
        settings.cyst.centre.y = y;
        const Phantom phantom(settings);
        return PhantomFrame(phantom, 0.3).LevelRoundCyst(0.5);
    };
    const double difference = levelInCyst(40) - levelInCyst(30);
    // 10 mm of 0.5 dB for each cm and MHz there and back, of which the cyst hides nothing: noise
    // does not come through it.
    const double decibels = 0.5 * 7.5 * 2;
    EXPECT_NEAR(difference, decibels / 60 * 255, 5);
}

} // namespace

} // namespace simulation
