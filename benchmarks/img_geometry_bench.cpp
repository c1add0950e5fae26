// This compares the mask of the imaged region and scan conversion with their plain forms.

#include "RatioReporter.h"

#include <qor_imgproc/ConvertFrame.h>
#include <qor_imgproc/FrameMap.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/PixelCoordinates.h>
#include <Utils_Statics/CImgGeometry.h>

#include <cmath>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr int Width = 1024;
constexpr int Height = 768;
constexpr int Samples = 2048;
constexpr int Frequency = 14997059;
constexpr double SampleMicrons = 1540e6 / (2.0 * Frequency);
constexpr std::size_t ImageSize = static_cast<std::size_t>(Width) * Height;

struct Scene
{
    const char* name;
    ZelProbe probe;
    int lines;
    UPoint origin;
    UPoint scale;
};

// Full-size images of 105 mm depth; the curved one has the geometry of the sample frame.
constexpr Scene Scenes[] = {
    {"curved", {0, 188, 292, 26400, 0}, 241, {512, -20}, {190, 165}},
    {"linear", {1, 128, 800, 0, 0}, 128, {512, 20}, {140, 140}},
    {"phased", {2, 64, 220, 0, 90000}, 181, {512, 10}, {160, 140}},
};

std::vector<unsigned char> Frame(const Scene& scene)
{
    std::vector<unsigned char> frame(static_cast<std::size_t>(scene.lines) * Samples);
    unsigned int noise = 1;
    for (auto& pixel : frame)
        pixel = static_cast<unsigned char>((noise = noise * 1664525u + 1013904223u) >> 24);
    return frame;
}

struct Position
{
    int line = 0;
    int sample = 0;
    unsigned int lineFraction = 0;
    unsigned int sampleFraction = 0;
};

Position Precise(const Scene& s, int x, int y, const URect& rect)
{
    Position p;
    ScanConverter::GetPreciseUSCoordinates(x, y, &p.line, &p.sample, &p.lineFraction,
                                           &p.sampleFraction, rect, &s.probe, 1540, 0, 0, s.lines,
                                           Frequency, s.origin, s.scale, 0.0, 1.0, false);
    return p;
}

URect Region(const Scene& s)
{
    URect rect;
    qor_utils::ConvertRect({0, 0, s.probe.elements, Samples}, s.lines, s.probe.elements, rect);
    return rect;
}

bool Inside(const Position& p, const URect& r)
{
    return p.line > 0 && p.line < r.right && p.sample > 0 && p.sample < r.bottom;
}

void MaskEveryPixel(benchmark::State& state, const Scene& s)
{
    std::vector<unsigned char> mask(ImageSize);
    const URect rect = Region(s);
    for (auto _ : state) {
        for (int y = 0; y < Height; ++y)
            for (int x = 0; x < Width; ++x)
                mask[static_cast<std::size_t>(y) * Width + static_cast<std::size_t>(x)] =
                    Inside(Precise(s, x, y, rect), rect) ? 255 : 0;
        benchmark::DoNotOptimize(mask.data());
    }
}

void MaskLibrary(benchmark::State& state, const Scene& s)
{
    std::vector<unsigned char> mask(ImageSize);
    for (auto _ : state) {
        CImgGeometry::CreateImageMask(mask.data(), Width, Height, Frequency, 0, s.lines,
                                      CRect(0, 0, s.probe.elements, Samples), 0, &s.probe, 1540,
                                      s.origin, s.scale, 255);
        benchmark::DoNotOptimize(mask.data());
    }
}

// A plain inverse for straight-ahead scanning.
struct PlainInverse
{
    explicit PlainInverse(const Scene& s)
        : scene(s),
          step(s.probe.type == 0 ? static_cast<double>(s.probe.elements) * s.probe.pitch /
                                       s.probe.radius / s.lines
               : s.probe.type == 1 ? static_cast<double>(s.probe.elements) * s.probe.pitch / s.lines
                                   : s.probe.sectorAngle * 1.7453292519943296e-5 / s.lines),
          face(s.probe.type == 0 ? s.probe.radius : 0)
    {
    }

    void At(int x, int y, double& line, double& sample) const
    {
        const double dx = static_cast<double>(x - scene.origin.x) * scene.scale.x;
        const double dy = static_cast<double>(y - scene.origin.y) * scene.scale.y;
        const bool fan = scene.probe.type != 1;
        line = (fan ? std::atan2(dx, dy) : dx) / step + (scene.lines - 1) / 2.0;
        sample = ((fan ? std::sqrt(dx * dx + dy * dy) : dy) - face) / SampleMicrons;
    }

    const Scene& scene;
    double step;
    double face;
};

void PixelPlain(benchmark::State& state, const Scene& s)
{
    const PlainInverse plain(s);
    int i = 0;
    for (auto _ : state) {
        double line = 0;
        double sample = 0;
        plain.At(i & 1023, (i >> 4) & 511, line, sample);
        benchmark::DoNotOptimize(line);
        benchmark::DoNotOptimize(sample);
        ++i;
    }
}

void PixelPrecise(benchmark::State& state, const Scene& s)
{
    int i = 0;
    for (auto _ : state) {
        Position p = Precise(s, i & 1023, (i >> 4) & 511, {});
        benchmark::DoNotOptimize(p);
        ++i;
    }
}

void FramePlain(benchmark::State& state, const Scene& s)
{
    const std::vector<unsigned char> frame = Frame(s);
    std::vector<unsigned char> image(ImageSize);
    const PlainInverse plain(s);
    for (auto _ : state) {
        for (int y = 0; y < Height; ++y)
            for (int x = 0; x < Width; ++x) {
                double line = 0;
                double sample = 0;
                plain.At(x, y, line, sample);
                unsigned char& pixel =
                    image[static_cast<std::size_t>(y) * Width + static_cast<std::size_t>(x)];
                pixel = 0;
                if (!(line >= 0 && line < s.lines - 1 && sample >= 0 && sample < Samples - 1))
                    continue;
                const int l = static_cast<int>(line);
                const int n = static_cast<int>(sample);
                const unsigned char* p =
                    &frame[static_cast<std::size_t>(l) * Samples + static_cast<std::size_t>(n)];
                const double fl = line - l;
                const double fs = sample - n;
                pixel = static_cast<unsigned char>(
                    (p[0] * (1 - fs) + p[1] * fs) * (1 - fl) +
                    (p[Samples] * (1 - fs) + p[Samples + 1] * fs) * fl + 0.5);
            }
        benchmark::DoNotOptimize(image.data());
    }
}

qor_utils::ScanGeometry GeometryOf(const Scene& s)
{
    qor_utils::ScanGeometry g;
    g.probe = &s.probe;
    g.lines = s.lines;
    g.samples = Samples;
    g.samplingFreq = Frequency;
    g.origin = s.origin;
    g.micronsPerPixel = s.scale;
    g.width = Width;
    g.height = Height;
    return g;
}

void FrameConvert(benchmark::State& state, const Scene& s)
{
    const std::vector<unsigned char> frame = Frame(s);
    std::vector<unsigned char> image(ImageSize);
    for (auto _ : state) {
        qor_imgproc::ConvertFrame(GeometryOf(s), frame.data(), image.data());
        benchmark::DoNotOptimize(image.data());
    }
}

void FrameMapped(benchmark::State& state, const Scene& s)
{
    const std::vector<unsigned char> frame = Frame(s);
    std::vector<unsigned char> image(ImageSize);
    const qor_imgproc::FrameMap map(GeometryOf(s));
    for (auto _ : state) {
        map.Convert(frame.data(), image.data());
        benchmark::DoNotOptimize(image.data());
    }
}

void Register()
{
    const auto add = [](const std::string& name, const Scene& scene, auto function) {
        benchmark::RegisterBenchmark(
            (name + "/" + scene.name).c_str(),
            [&scene, function](benchmark::State& state) { function(state, scene); });
    };
    for (const Scene& scene : Scenes) {
        add("mask: every pixel", scene, MaskEveryPixel);
        add("mask: CreateImageMask", scene, MaskLibrary);
        add("pixel: plain", scene, PixelPlain);
        add("pixel: GetPreciseUSCoordinates", scene, PixelPrecise);
        add("frame: plain", scene, FramePlain);
        add("frame: ConvertFrame", scene, FrameConvert);
        add("frame: qor_imgproc::FrameMap kept", scene, FrameMapped);
    }
}

void PrintRatios(const RatioReporter& reporter)
{
    for (const Scene& scene : Scenes) {
        const std::string probe = std::string("/") + scene.name;
        reporter.PrintRatio("mask: every pixel" + probe, "mask: CreateImageMask" + probe, 3);
        reporter.PrintRatio("pixel: GetPreciseUSCoordinates" + probe, "pixel: plain" + probe);
        reporter.PrintRatio("frame: plain" + probe, "frame: ConvertFrame" + probe);
        reporter.PrintRatio("frame: plain" + probe, "frame: qor_imgproc::FrameMap kept" + probe);
    }
}

} // namespace

int main(int argc, char** argv)
{
    Register();
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
