// This records cines at the size of the imaging screen: it composes a frame, writes raw frames, and
// goes the whole way to a movie.
#include "RatioReporter.h"
#include "recording/CineComposition.h"

#include <benchmark/benchmark.h>
#include <test_support/DeviceContextComposition.h>
#include <test_support/InstalledCodec.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/CCineStoreAVI.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>

namespace {

CWinApp application(L"cine_bench");

constexpr int width = 1024;
constexpr int height = 768;
constexpr RECT layout[6] = {{0, 0, 640, 640},  {640, 0, 1024, 640}, {0, 640, 1024, 768},
                            {0, 40, 200, 140}, {8, 4, 700, 124},    {720, 4, 1016, 124}};

using Pixels = std::vector<std::uint32_t>;

// Echoes: speckle that fades with depth.
Pixels Echoes(SIZE size)
{
    std::minstd_rand random(7);
    Pixels pixels(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const auto depth = static_cast<double>(i) / static_cast<double>(pixels.size());
        const auto grey =
            static_cast<std::uint32_t>(static_cast<double>(random() & 0xFF) * (1.0 - depth));
        pixels[i] = grey * 0x010101u;
    }
    return pixels;
}

// A sector: pixels outside it keep the frame.
std::vector<std::uint8_t> SectorMask(SIZE size)
{
    const std::size_t stride = static_cast<std::size_t>(size.cx + 15) / 16 * 2;
    std::vector<std::uint8_t> bits(stride * static_cast<std::size_t>(size.cy));
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x)
            if (std::abs(x - size.cx / 2) > y * 0.7 + 20)
                bits[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x) / 8] |=
                    static_cast<std::uint8_t>(0x80 >> x % 8);
    return bits;
}

struct Scene
{
    SIZE size[5] = {utils_statics::PlaneSize(layout[0]), utils_statics::PlaneSize(layout[1]),
                    utils_statics::PlaneSize(layout[2]), utils_statics::StripSize(layout[1]),
                    utils_statics::PlaneSize(layout[3])};
    Pixels image[5] = {Echoes(size[0]), Echoes(size[1]), Echoes(size[2]), Echoes(size[3]),
                       Echoes(size[4])};
    std::vector<std::uint8_t> bits[2] = {SectorMask(size[0]), SectorMask(size[1])};
    CBitmap mask[2];
    Pixels frame = Pixels(width * height, 0x101010);

    Scene()
    {
        for (int i = 0; i < 2; ++i)
            mask[i].CreateBitmap(size[i].cx, size[i].cy, 1, 1, bits[i].data());
    }

    std::size_t LetThrough(int i) const
    {
        std::size_t kept = 0;
        for (const std::uint8_t byte : bits[i])
            for (int bit = 0; bit < 8; ++bit)
                kept += byte >> bit & 1;
        return image[i].size() - kept;
    }

    static std::size_t Area(const RECT& rect)
    {
        const SIZE s = utils_statics::PlaneSize(rect);
        return static_cast<std::size_t>(s.cx) * static_cast<std::size_t>(s.cy);
    }

    std::size_t TouchedBytes() const
    {
        const std::size_t pixels = LetThrough(0) + LetThrough(1) + Area(layout[4]) +
                                   Area(layout[5]) + image[3].size() + image[4].size();
        return pixels * sizeof(std::uint32_t);
    }
};

void ComposeInMemory(benchmark::State& state)
{
    Scene scene;
    utils_statics::Planes planes;
    for (int i = 0; i < 5; ++i)
        planes.image[i] = scene.image[i].data();
    for (auto _ : state) {
        const utils_statics::Mask masks[2] = {
            utils_statics::Mask(scene.mask[0]),
            utils_statics::Mask(scene.mask[1])}; // is read for every frame
        planes.mask[0] = &masks[0];
        planes.mask[1] = &masks[1];
        utils_statics::Compose({scene.frame.data(), {width, height}}, layout, planes);
        benchmark::ClobberMemory();
    }
}

void ComposeThroughDeviceContexts(benchmark::State& state)
{
    Scene scene;
    device_context_form::Form form{width, height, {}, {}, {scene.mask[0], scene.mask[1]}};
    std::copy(std::begin(layout), std::end(layout), form.rects);
    for (int i = 0; i < 5; ++i)
        form.image[i] = scene.image[i].data();
    for (auto _ : state)
        form.Compose(scene.frame.data());
}

void CopyTouchedBytes(benchmark::State& state)
{
    Scene scene;
    const std::size_t bytes = scene.TouchedBytes();
    const Pixels source(bytes / sizeof(std::uint32_t) + 1, 0x123456);
    Pixels target(source.size());
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), bytes);
        benchmark::ClobberMemory();
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

constexpr int rawFrame = 1 << 20;
constexpr int rawFramesOfFile = 128;

void AddRawFrames(benchmark::State& state)
{
    const test_support::TemporaryFolder folder;
    std::vector<char> frame(rawFrame, 'x');
    CCineStore store;
    for (auto _ : state) {
        store.InitStorage((folder / L"cine.raw").c_str(), uDataBMode, {}, 0, 0, 0, 0, 0, 0);
        for (int i = 0; i < rawFramesOfFile; ++i)
            if (!store.AddFrame(frame.data(), rawFrame)) state.SkipWithError("AddFrame failed");
        store.EndStorage();
    }
    state.SetBytesProcessed(state.iterations() * rawFramesOfFile * rawFrame);
}

void WriteRawFrames(benchmark::State& state)
{
    const test_support::TemporaryFolder folder;
    std::vector<char> frame(rawFrame, 'x');
    for (auto _ : state) {
        HANDLE file = CreateFileW((folder / L"cine.raw").c_str(), GENERIC_WRITE, 0, nullptr,
                                  CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        WriteFile(file, frame.data(), sizeof(CineHeader), &written,
                  nullptr); // frames follow it, off the page grid
        for (int i = 0; i < rawFramesOfFile; ++i)
            if (!WriteFile(file, frame.data(), rawFrame, &written, nullptr))
                state.SkipWithError("WriteFile failed");
        CloseHandle(file);
    }
    state.SetBytesProcessed(state.iterations() * rawFramesOfFile * rawFrame);
}

constexpr int framesOfMovie = 90;

// The whole chain: planes are turned and composed, the frame is compressed and written, the movie
// is finished.
void RecordMovie(benchmark::State& state, const wchar_t* codec, int quality)
{
    application.WriteProfileString(L"Settings\\Capture", L"RecordCodec", codec);
    application.WriteProfileInt(L"Settings\\Capture", L"RecordQuality", quality);
    const test_support::TemporaryFolder folder;
    const std::wstring fileName = folder / L"movie.avi";
    Scene scene;
    CBitmap background;
    background.CreateBitmap(width, height, 1, 32, scene.frame.data());
    const std::vector<CRect> rects(std::begin(layout), std::end(layout));
    unsigned int* image[5];
    for (int i = 0; i < 5; ++i)
        image[i] = reinterpret_cast<unsigned int*>(scene.image[i].data());
    CCineStoreAVI store;
    for (auto _ : state) {
        if (!store.InitStorage(fileName.c_str(), &background, width, height, rects, 32))
            state.SkipWithError("InitStorage failed");
        for (int i = 0; i < framesOfMovie; ++i)
            if (!store.AddFrame(image[0], image[1], image[2], image[3], image[4], scene.mask[0],
                                scene.mask[1], true, false, false, false))
                state.SkipWithError("AddFrame failed");
        store.EndStorage();
    }
    state.counters["fps"] = benchmark::Counter(
        static_cast<double>(state.iterations() * framesOfMovie), benchmark::Counter::kIsRate);
}

void PrintRatios(const RatioReporter& reporter)
{
    reporter.PrintRatio("Compose/device contexts", "Compose/memory", 5);
    reporter.PrintRatio("Compose/memory", "Compose/memcpy", -2);
    reporter.PrintRatio("Raw/AddFrame", "Raw/WriteFile", -1.1);
}

} // namespace

int main(int argc, char** argv)
{
    application.SetRegistryKey(L"CineBench");
    const test_support::InstalledCodec installed(L"MJPG", L"mjpgcodec.dll");
    benchmark::RegisterBenchmark("Compose/memory", ComposeInMemory);
    benchmark::RegisterBenchmark("Compose/device contexts", ComposeThroughDeviceContexts);
    benchmark::RegisterBenchmark("Compose/memcpy", CopyTouchedBytes);
    benchmark::RegisterBenchmark("Raw/AddFrame", AddRawFrames)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark("Raw/WriteFile", WriteRawFrames)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    const auto movie = [](const char* name, const wchar_t* codec, int quality) {
        benchmark::RegisterBenchmark(name, RecordMovie, codec, quality)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    movie("Movie/uncompressed", L"Uncompressed", 100);
    movie("Movie/MJPG 75", L"MJPG", 75);
    movie("Movie/MJPG 100", L"MJPG", 100);
    const int result = RatioReporter::RunAll(argc, argv, PrintRatios);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\CineBench");
    return result;
}
