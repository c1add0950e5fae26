// CreateImageMask: its masks against the mask made step by step, and against a sector.
#include "MaskInput.h"

#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/PixelCoordinates.h>
#include <test_support/Random.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

using test_support::Random;

namespace {

// The mask step by step, written without the library's code.
class PlainMask
{
public:
    explicit PlainMask(const MaskInput& in) : m_in(in)
    {
        const double a = in.steerAngle * 1.7453292519943296e-5;
        m_sin = std::sin(a);
        m_cos = std::cos(a);
        qor_utils::ConvertRect(
            {in.imageRect.left, in.imageRect.top, in.imageRect.right, in.imageRect.bottom},
            in.lines, in.probe ? in.probe->elements : 0, m_rect);
        m_lineEnd = Difference(m_rect.right, m_rect.left);
        m_sampleEnd = Difference(m_rect.bottom, m_rect.top);
    }

    Bytes Make()
    {
        Bytes mask(Size(m_in), 0);
        for (int x = 0; x < m_in.width; ++x) {
            int smallest = m_lineEnd;
            const int bottom = FindBottom(x, smallest);
            if (smallest >= m_lineEnd) break;
            if (bottom < 0) continue;
            for (int y = FindTop(x, bottom); y <= bottom; ++y)
                mask[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_in.width) +
                     static_cast<std::size_t>(x)] = m_in.value;
        }
        return mask;
    }

private:
    static int Difference(int a, int b) // wraps around
    {
        return static_cast<int>(static_cast<unsigned int>(a) - static_cast<unsigned int>(b));
    }

    int FindBottom(int x, int& smallest)
    {
        for (int y = m_in.height - 1; y >= 0; --y) {
            const bool inside = Inside(x, y, false);
            smallest = std::min(smallest, m_line);
            if (inside) return y;
        }
        return -1;
    }

    int FindTop(int x, int bottom)
    {
        int lo = -1;
        int hi = bottom;
        while (lo < hi - 1) {
            const int mid = (lo + hi) / 2;
            (Inside(x, mid, true) ? hi : lo) = mid;
        }
        return hi;
    }

    bool Inside(int x, int y, bool fine)
    {
        int sample = 0;
        unsigned int lineFraction = 0, sampleFraction = 0;
        ScanConverter::GetPreciseUSCoordinates(
            x, y, &m_line, &sample, &lineFraction, &sampleFraction, m_rect, m_in.probe,
            m_in.soundSpeed, m_in.steerAngle, m_in.scanB, m_in.lines, m_in.samplingFreq,
            m_in.origin, m_in.scale, m_sin, m_cos, fine);
        return m_line > 0 && m_line < m_lineEnd && sample > 0 && sample < m_sampleEnd;
    }

    const MaskInput& m_in;
    double m_sin = 0;
    double m_cos = 0;
    URect m_rect;
    int m_lineEnd = 0;
    int m_sampleEnd = 0;
    int m_line = 0;
};

std::string Describe(const MaskInput& in)
{
    const ZelProbe& p = *in.probe;
    std::ostringstream text;
    text << "probe " << p.type << ' ' << p.elements << ' ' << p.pitch << ' ' << p.radius << ' '
         << p.sectorAngle << ", " << in.width << " x " << in.height << ", frequency "
         << in.samplingFreq << ", steered " << in.steerAngle << ", lines " << in.lines << ", scanB "
         << in.scanB << ", speed " << in.soundSpeed << ", origin " << in.origin.x << ' '
         << in.origin.y << ", scale " << in.scale.x << ' ' << in.scale.y << ", region "
         << in.imageRect.left << ' ' << in.imageRect.top << ' ' << in.imageRect.right << ' '
         << in.imageRect.bottom;
    return text.str();
}

ZelProbe RandomProbe(Random& random)
{
    ZelProbe probe{random.Int(0, 2), random.Int(1, 256), random.Int(50, 600),
                   random.Int(5000, 60000), random.Int(5000, 179000)};
    if (random.OneIn(4)) probe.radius = -probe.radius;
    return probe;
}

MaskInput RandomInput(Random& random, const ZelProbe& probe)
{
    MaskInput in;
    in.probe = &probe;
    in.width = random.Int(1, 300);
    in.height = random.Int(1, 200);
    in.samplingFreq = random.Int(500000, 20000000);
    in.steerAngle = random.OneIn(2) ? 0 : random.Int(-60000, 60000);
    in.lines = random.Int(1, 300);
    const int left = random.OneIn(2) ? 0 : random.Int(-300, std::clamp(probe.elements, 0, 300));
    const int top = random.OneIn(2) ? 0 : random.Int(-1000, 300);
    in.imageRect = CRect(left, top, random.OneIn(2) ? probe.elements : random.Int(-5, 300),
                         random.Int(1, 3000));
    in.scanB = probe.type == 2 && random.OneIn(2) ? random.Int(-20000, 50000) : 0;
    in.soundSpeed = random.Int(1000, 2100);
    in.origin = {random.Int(-100, 400), random.Int(-200, 200)};
    in.scale = {random.Int(20, 2000), random.Int(20, 2000)};
    if (random.OneIn(10)) in.scale.x = -in.scale.x;
    if (random.OneIn(10)) in.scale.y = -in.scale.y;
    in.value = static_cast<unsigned char>(random.Int(1, 255));
    return in;
}

} // namespace

TEST(CreateImageMask, MarksTheSectorAndNothingElse)
{
    const MaskInput in = CurvedInput(Curved);
    const Bytes mask = Mask(in);
    int marked = 0;
    for (int y = 0; y < in.height; ++y)
        for (int x = 0; x < in.width; ++x) {
            const double dx = (x - 200) * 400.0;
            const double dy = (y + 80) * 400.0;
            const double depth = (std::hypot(dx, dy) - 40000) / 100;
            const double line = std::atan2(dx, dy) * 100 + 63.5; // 400 / 40000 radians a line
            const auto pixel = mask[static_cast<std::size_t>(y * in.width + x)];
            ASSERT_TRUE(pixel == 0 || pixel == 255);
            marked += pixel == 255;
            // Edges are outside; the results that depend on rounding to sixteenths are left out.
            if (line > 1.1 && line < 127.9 && depth > 1.1 && depth < 899.9) {
                ASSERT_EQ(pixel, 255) << x << " " << y;
            }
            if (line < 0.9 || line > 128.1 || depth < 0.9 || depth > 900.1) {
                ASSERT_EQ(pixel, 0) << x << " " << y;
            }
        }
    EXPECT_GT(marked, 10000);
}

TEST(CreateImageMask, EndsAtTheFirstColumnPastTheRegion)
{
    // Runs from right to left: the first columns lie past the region, and the region's columns
    // follow.
    const ZelProbe linear{1, 128, 300, 0, 0};
    MaskInput in;
    in.probe = &linear;
    in.width = 500;
    in.height = 50;
    in.samplingFreq = 7700000;
    in.lines = 128;
    in.imageRect = CRect(0, 0, 64, 40);
    in.origin = {200, 0};
    in.scale = {-100, 100};
    const auto marked = [](const Bytes& mask) { return std::count(mask.begin(), mask.end(), 255); };
    EXPECT_EQ(marked(Mask(in)), 0);
    EXPECT_EQ(marked(PlainMask(in).Make()), 0);
    // The same columns are marked when the mask begins inside the region.
    in.origin.x = -60;
    EXPECT_GT(marked(Mask(in)), 1000);
    EXPECT_EQ(Mask(in), PlainMask(in).Make());
}

TEST(CreateImageMask, MarksNothingWithoutAGeometry)
{
    MaskInput in = CurvedInput(Curved);
    const auto nothing = [](const MaskInput& input) {
        const Bytes mask = Mask(input);
        return std::count(mask.begin(), mask.end(), 0) ==
                   static_cast<std::ptrdiff_t>(mask.size()) &&
               mask == PlainMask(input).Make();
    };
    EXPECT_FALSE(nothing(in));
    in.probe = nullptr;
    EXPECT_TRUE(nothing(in));
    in = CurvedInput(Curved);
    in.samplingFreq = 0;
    EXPECT_TRUE(nothing(in));
    in = CurvedInput(Curved);
    in.scale.x = 0;
    EXPECT_TRUE(nothing(in));
    in = CurvedInput(Curved);
    in.lines = -3;
    EXPECT_TRUE(nothing(in));
    in = CurvedInput(Curved);
    in.imageRect = CRect(128, 900, 0, 0);
    EXPECT_TRUE(nothing(in)) << "a rectangle the wrong way round";
}

TEST(CreateImageMask, IsTheStepByStepMaskOnRandomInput)
{
    Random random(4711);
    int marked = 0;
    for (int i = 0; i < 2500; ++i) {
        const ZelProbe probe = RandomProbe(random);
        const MaskInput in = RandomInput(random, probe);
        const Bytes expected = PlainMask(in).Make();
        ASSERT_EQ(Mask(in), expected) << Describe(in);
        marked += std::count(expected.begin(), expected.end(), in.value) > 0;
    }
    EXPECT_GT(marked, 400) << "the random input is not all empty";
}

// The region begins before the probe's face, behind an extended sector.
TEST(CreateImageMask, ReachesBeforeTheFaceOfAnExtendedSector)
{
    const ZelProbe probe{2, 80, 185, 64188, 52658};
    MaskInput in;
    in.probe = &probe;
    in.width = 7;
    in.height = 19;
    in.samplingFreq = 5193262;
    in.steerAngle = -23527;
    in.lines = 80;
    in.imageRect = CRect(-277, -818, 80, 243);
    in.scanB = 40796;
    in.soundSpeed = 1629;
    in.origin = {7, 8};
    in.scale = {12158, 12158};
    const Bytes mask = Mask(in);
    EXPECT_EQ(mask[1], in.value); // pixel (1, 0)
    EXPECT_EQ(mask, PlainMask(in).Make());
}

TEST(CreateImageMask, IsTheStepByStepMaskOnAdversarialInput)
{
    Random random(815);
    const int extremes[] = {INT_MIN, -1000000, -1,      0,         1,      2,
                            100,     30000,    1000000, 100000000, INT_MAX};
    const auto any = [&] { return random.Of(extremes); };
    const auto sometimes = [&](int& value) {
        if (random.OneIn(4)) value = any();
    };
    for (int i = 0; i < 4000; ++i) {
        ZelProbe probe = RandomProbe(random);
        sometimes(probe.elements);
        sometimes(probe.pitch);
        sometimes(probe.radius);
        sometimes(probe.sectorAngle);
        MaskInput in = RandomInput(random, probe);
        in.width = random.Int(1, 40);
        in.height = random.Int(1, 60);
        sometimes(in.samplingFreq);
        sometimes(in.steerAngle);
        sometimes(in.lines);
        sometimes(in.scanB);
        sometimes(in.soundSpeed);
        for (std::int32_t* number : {&in.origin.x, &in.origin.y, &in.scale.x, &in.scale.y})
            sometimes(*number);
        ASSERT_EQ(Mask(in), PlainMask(in).Make()) << Describe(in);
    }
}
