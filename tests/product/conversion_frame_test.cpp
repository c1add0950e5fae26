// Conversion of whole frames to images.
#include "ConversionScene.h"

#include <gtest/gtest.h>
#include <qor_imgproc/ConvertFrame.h>
#include <qor_imgproc/FrameMap.h>

#include <algorithm>
#include <climits>
#include <vector>

namespace {

// Bilinear interpolation pixel by pixel in double precision, for comparison.
double PlainPixel(const Scene& s, const std::vector<unsigned char>& frame, int samples, int x,
                  int y)
{
    const UPoint p = Unflip(s, {x, y});
    const auto scan = ModelOf(s).ToScan({(static_cast<double>(p.x) - s.origin.x) * s.scale.x,
                                         (static_cast<double>(p.y) - s.origin.y) * s.scale.y});
    if (!(scan.line >= 0 && scan.line <= s.lines - 1 && scan.sample >= 0 &&
          scan.sample <= samples - 1))
        return -1;
    const int l = std::min(static_cast<int>(scan.line), std::max(0, s.lines - 2));
    const int n = std::min(static_cast<int>(scan.sample), std::max(0, samples - 2));
    const auto grey = [&](int line, int sample) {
        line = std::min(line, s.lines - 1);
        sample = std::min(sample, samples - 1);
        return static_cast<double>(
            frame[static_cast<std::size_t>(line) * static_cast<std::size_t>(samples) +
                  static_cast<std::size_t>(sample)]);
    };
    const double fl = scan.line - l;
    const double fs = scan.sample - n;
    return (grey(l, n) * (1 - fs) + grey(l, n + 1) * fs) * (1 - fl) +
           (grey(l + 1, n) * (1 - fs) + grey(l + 1, n + 1) * fs) * fl;
}

// The first of two indices that a position lies between, and the weight of the second in 256ths.
struct Neighbours
{
    Neighbours(double position, int count)
        : first(std::min(static_cast<int>(position), std::max(0, count - 2))),
          second(std::min(first + 1, count - 1)),
          weight(static_cast<int>((position - first) * 256 + 0.5))
    {
    }

    int Between(int here, int next) const { return here * (256 - weight) + next * weight; }

    int first;
    int second;
    int weight;
};

// The same interpolation in 256ths, for a comparison bit by bit.
unsigned char ExactPixel(const Scene& s, const std::vector<unsigned char>& frame, int samples,
                         UPoint pixel, unsigned char background)
{
    const UPoint p = Unflip(s, pixel);
    const auto scan = ModelOf(s).ToScan({(static_cast<double>(p.x) - s.origin.x) * s.scale.x,
                                         (static_cast<double>(p.y) - s.origin.y) * s.scale.y});
    if (!(scan.line >= 0 && scan.line <= s.lines - 1 && scan.sample >= 0 &&
          scan.sample <= samples - 1))
        return background;
    const Neighbours line(scan.line, s.lines);
    const Neighbours sample(scan.sample, samples);
    const auto onLine = [&](int number) {
        const unsigned char* const bytes =
            frame.data() + static_cast<std::size_t>(number) * static_cast<std::size_t>(samples);
        return sample.Between(bytes[sample.first], bytes[sample.second]);
    };
    return static_cast<unsigned char>(
        (line.Between(onLine(line.first), onLine(line.second)) + 0x8000) >> 16);
}

} // namespace

TEST(FrameConversion, OfALinearProbeIsThatOfEachPixelAlone)
{
    Random random(20261122);
    for (int i = 0; i < 200; ++i) {
        Scene s = RandomScene(random, qor_utils::linearProbe);
        s.width = random.Int(1, 60);
        s.height = random.Int(1, 60);
        s.origin = {random.Int(-10, s.width), random.Int(-10, 10)};
        s.scale = {random.Int(50, 800), random.Int(50, 800)};
        const int samples = random.Int(1, 600);
        std::vector<unsigned char> frame(static_cast<std::size_t>(s.lines * samples));
        std::generate(frame.begin(), frame.end(),
                      [&] { return static_cast<unsigned char>(random.Int(0, 255)); });
        std::vector<unsigned char> image(static_cast<std::size_t>(s.width * s.height));
        ASSERT_TRUE(
            qor_imgproc::ConvertFrame(GeometryOf(s, samples), frame.data(), image.data(), 77));
        std::vector<unsigned char> exact;
        for (int y = 0; y < s.height; ++y)
            for (int x = 0; x < s.width; ++x)
                exact.push_back(ExactPixel(s, frame, samples, {x, y}, 77));
        ASSERT_EQ(image, exact) << Describe(s);
    }
}

TEST(FrameConversion, IsTheBilinearInterpolationOfTheFrame)
{
    Random random(20240917);
    for (int i = 0; i < 60; ++i) {
        Scene s = RandomScene(random, i % 3);
        s.width = random.Int(1, 200);
        s.height = random.Int(1, 150);
        s.origin = {s.width / 2, s.height / 8};
        s.scale = {random.Int(200, 800), random.Int(200, 800)};
        const int samples = random.Int(1, 600);
        std::vector<unsigned char> frame(static_cast<std::size_t>(s.lines) *
                                         static_cast<std::size_t>(samples));
        for (auto& sample : frame)
            sample = static_cast<unsigned char>(random.Int(0, 255));
        std::vector<unsigned char> image(
            static_cast<std::size_t>(s.width) * static_cast<std::size_t>(s.height), 1);
        ASSERT_TRUE(
            qor_imgproc::ConvertFrame(GeometryOf(s, samples), frame.data(), image.data(), 77));
        int edge = 0;
        for (int y = 0; y < s.height; ++y)
            for (int x = 0; x < s.width; ++x) {
                const int grey =
                    image[static_cast<std::size_t>(y) * static_cast<std::size_t>(s.width) +
                          static_cast<std::size_t>(x)];
                const double plain = PlainPixel(s, frame, samples, x, y);
                if (std::fabs((plain < 0 ? 77 : plain) - grey) > 2) ++edge;
            }
        // Only a pixel within a millionth of the frame's very edge may fall on the other side of
        // it.
        EXPECT_LE(edge, s.height / 50 + 1) << Describe(s);
    }
}

TEST(FrameConversion, RefusesWhatHasNoImage)
{
    const Scene s{linear, 10, 7700000, 1540, 0, 0, 0, {5, 0}, {100, 100}, 10, 10, 0};
    std::vector<unsigned char> frame(1000);
    std::vector<unsigned char> image(100, 9);
    const qor_utils::ScanGeometry good = GeometryOf(s, 100);
    EXPECT_TRUE(qor_imgproc::FrameMap(good).Valid());
    EXPECT_FALSE(qor_imgproc::ConvertFrame(good, nullptr, image.data()));
    EXPECT_FALSE(qor_imgproc::ConvertFrame(good, frame.data(), nullptr));
    const auto refused = [&](auto change) {
        qor_utils::ScanGeometry g = good;
        change(g);
        return !qor_imgproc::ConvertFrame(g, frame.data(), image.data());
    };
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.probe = nullptr; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.width = 0; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.height = -4; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.width = INT_MAX; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.width = g.height = 46000; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.lines = 0; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.samples = INT_MAX; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.samplingFreq = 0; }));
    EXPECT_TRUE(refused([](qor_utils::ScanGeometry& g) { g.micronsPerPixel.y = 0; }));
    EXPECT_EQ(std::count(image.begin(), image.end(), 9), 100) << "nothing is written";
}

TEST(FrameConversion, LineOffsetIsTheLineOfTheApertureThatTheFrameBeginsWith)
{
    Random random(20240917);
    for (int type = 0; type < 3; ++type) {
        Scene s = RandomScene(random, type);
        s.lines = 40;
        s.width = 120;
        s.height = 100;
        s.origin = {60, 10};
        s.scale = {400, 400};
        constexpr int samples = 200;
        constexpr int offset = 7;
        std::vector<unsigned char> frame(40 * samples, 0);
        std::vector<unsigned char> shifted(frame);
        for (std::size_t i = 0; i < frame.size(); ++i)
            frame[i] = static_cast<unsigned char>(random.Int(1, 255));
        std::copy(frame.begin() + offset * samples, frame.end(), shifted.begin());
        std::vector<unsigned char> image(120 * 100);
        std::vector<unsigned char> moved(image);
        qor_utils::ScanGeometry geometry = GeometryOf(s, samples);
        ASSERT_TRUE(qor_imgproc::ConvertFrame(geometry, frame.data(), image.data()));
        geometry.lineOffset = offset;
        ASSERT_TRUE(qor_imgproc::ConvertFrame(geometry, shifted.data(), moved.data()));
        int compared = 0;
        for (std::size_t i = 0; i < image.size(); ++i) {
            if (image[i] == 0 || moved[i] == 0) continue; // a pixel of only one of the two frames
            EXPECT_EQ(image[i], moved[i]) << Describe(s);
            ++compared;
        }
        EXPECT_GT(compared, 0) << Describe(s);
    }
}
