// This measures pictures of the size of the console's screen, the buffered window, and the time
// from the call of a balloon to the screen.
#include "RatioReporter.h"

#include <base/GdiHandles.h>
#include <base/GdiPlusSession.h>
#include <benchmark/benchmark.h>
#include <test_support/DibSection.h>
#include <test_support/Messages.h>
#include <test_support/PerPixelForm.h>
#include <test_support/TemporaryFolder.h>
#include <test_support/TipReader.h>
#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/CBufferedWnd.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <random>

using test_support::DibSection;
using test_support::Pump;
using test_support::ShownTip;

namespace {

CWinApp application(L"imaging_bench");

constexpr int width = 1024;
constexpr int height = 768;
constexpr std::size_t pixelCount = std::size_t{width} * height;

using Pixels = std::vector<std::uint32_t>;
using Image = std::unique_ptr<Gdiplus::Bitmap>;

// Opaque random colours.
Pixels Noise()
{
    std::minstd_rand random(7);
    Pixels pixels(pixelCount);
    for (std::uint32_t& pixel : pixels)
        pixel = 0xFF000000 | static_cast<std::uint32_t>(random() & 0xFFFFFF);
    return pixels;
}

// Random greys, whose weighted sums are whole numbers.
Pixels Echoes()
{
    Pixels pixels = Noise();
    for (std::uint32_t& pixel : pixels)
        pixel = 0xFF000000 | (pixel & 0xFF) * 0x010101;
    return pixels;
}

Image ImageOver(Pixels& pixels)
{
    return std::make_unique<Gdiplus::Bitmap>(width, height, width * 4, PixelFormat32bppARGB,
                                             reinterpret_cast<BYTE*>(pixels.data()));
}

// Each round works on the same picture, which is copied in uncounted. The clock is read here,
// because pausing the benchmark asks the system, after which the processor has to warm up to the
// work again.
template <class Work>
void OnFreshPixels(benchmark::State& state, const Pixels& source, std::uint32_t* target, Work work)
{
    for (auto _ : state) {
        std::memcpy(target, source.data(), pixelCount * 4);
        const auto begin = std::chrono::steady_clock::now();
        work();
        benchmark::ClobberMemory();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(taken.count());
    }
}

void CopyPixels(benchmark::State& state)
{
    const Pixels source = Noise();
    Pixels target(pixelCount);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), pixelCount * 4);
        benchmark::ClobberMemory();
    }
}

void GreyImage(benchmark::State& state, Pixels (*source)())
{
    Pixels pixels(pixelCount);
    const Image image = ImageOver(pixels);
    OnFreshPixels(state, source(), pixels.data(), [&] { GrayScaleBitmap(image.get(), 255); });
}

void GreyImagePixelByPixel(benchmark::State& state)
{
    Pixels pixels(pixelCount);
    const Image image = ImageOver(pixels);
    OnFreshPixels(state, Noise(), pixels.data(),
                  [&] { per_pixel_form::GrayScaleBitmap(*image, 255); });
}

void GreyDevice(benchmark::State& state)
{
    const DibSection section(width, height, 32, DibSection::bottomUp);
    OnFreshPixels(state, Noise(), reinterpret_cast<std::uint32_t*>(section.bits()),
                  [&] { GrayScale(section.get(), 200); });
}

void GreyDevicePixelByPixel(benchmark::State& state)
{
    const DibSection section(width, height, 32, DibSection::bottomUp);
    const base::MemoryContext context(CreateCompatibleDC(nullptr));
    const base::Selection selected(context.get(), section.get());
    OnFreshPixels(state, Noise(), reinterpret_cast<std::uint32_t*>(section.bits()),
                  [&] { per_pixel_form::GrayScale(context.get(), width, height, 200); });
}

template <class Blend>
void BlendPixels(benchmark::State& state, bool withBits, Blend blend)
{
    Pixels pixels(pixelCount);
    const Pixels noise = Noise();
    std::vector<DWORD> background(noise.rbegin(), noise.rend());
    auto* const bits = reinterpret_cast<unsigned char*>(pixels.data());
    OnFreshPixels(state, noise, pixels.data(),
                  [&] { blend(bits, withBits ? background.data() : nullptr); });
}

void Blend(benchmark::State& state, bool withBits)
{
    const DibSection section(width, height, 32, DibSection::topDown);
    BlendPixels(state, withBits, [&](unsigned char* bits, DWORD* background) {
        PreMultiplyRGBChannels(section.get(), bits, 100, RGB(10, 20, 30), background);
    });
}

void BlendPlainly(benchmark::State& state, bool withBits)
{
    BlendPixels(state, withBits, [](unsigned char* bits, const DWORD* background) {
        per_pixel_form::PreMultiply({bits, pixelCount * 4}, 100, RGB(10, 20, 30), background);
    });
}

constexpr float linear[] = {0, 1};

void RoundCorners(benchmark::State& state)
{
    Pixels pixels = Noise();
    const Image source = ImageOver(pixels);
    for (auto _ : state)
        Image(CreateRoundedBitmap(source.get(), 40, linear, linear, 2));
}

// The steps of a rounded copy that GDI+ does itself. One call for each pixel follows them.
void DrawMask(Gdiplus::Bitmap& mask)
{
    Gdiplus::Graphics graphics(&mask);
    graphics.Clear(Gdiplus::Color(0x00000000));
    Gdiplus::GraphicsPath path;
    CreateRoundRect(path, 0, 0, width, height, 40);
    Gdiplus::PathGradientBrush brush(&path);
    Gdiplus::Color edge(0xFF000000);
    int count = 1;
    brush.SetCenterColor(Gdiplus::Color(0xFFFF0000));
    brush.SetSurroundColors(&edge, &count);
    graphics.FillRectangle(&brush, 0, 0, width, height);
}

void RoundCornersPixelByPixel(benchmark::State& state)
{
    Pixels pixels = Noise();
    const Image source = ImageOver(pixels);
    for (auto _ : state) {
        const Image copy(source->Clone(0, 0, width, height, PixelFormat32bppARGB));
        DrawMask(*copy);
        per_pixel_form::MaskByRed(*copy, *source);
    }
}

// The part of the above that remains when the pixels cost nothing.
void DrawMaskAlone(benchmark::State& state)
{
    Pixels pixels = Noise();
    const Image source = ImageOver(pixels);
    for (auto _ : state) {
        const Image copy(source->Clone(0, 0, width, height, PixelFormat32bppARGB));
        DrawMask(*copy);
    }
}

void MaskPixelByPixel(benchmark::State& state)
{
    Pixels pixels = Noise();
    const Image source = ImageOver(pixels);
    const Image mask(source->Clone(0, 0, width, height, PixelFormat32bppARGB));
    for (auto _ : state)
        per_pixel_form::MaskByRed(*mask, *source);
}

void Border(benchmark::State& state)
{
    Pixels pixels = Noise();
    const Image source = ImageOver(pixels);
    for (auto _ : state)
        Image(CreateBorderedBitmap(source.get(), linear, linear, 2, RGB(255, 200, 0)));
}

void BorderPlainly(benchmark::State& state)
{
    Pixels pixels = Noise();
    const Image source = ImageOver(pixels);
    for (auto _ : state) {
        const Image copy(source->Clone(0, 0, width, height, PixelFormat32bppARGB));
        Gdiplus::Graphics graphics(copy.get());
        Gdiplus::GraphicsPath path;
        path.AddRectangle(Gdiplus::Rect(0, 0, width, height));
        Gdiplus::PathGradientBrush brush(&path);
        Gdiplus::Color edge(0xFFFFC800);
        int count = 1;
        brush.SetCenterColor(Gdiplus::Color(0x00000000));
        brush.SetSurroundColors(&edge, &count);
        graphics.FillRectangle(&brush, 0, 0, width, height);
    }
}

// A picture file of half the size, which is doubled.
class PictureFile
{
public:
    PictureFile()
    {
        const DibSection section(width / 2, height / 2, 32, DibSection::topDown);
        const Pixels noise = Noise();
        std::memcpy(section.bits(), noise.data(), pixelCount); // a quarter of its bytes
        SaveBitmap(section.get(), 3, m_path.c_str());
    }
    const wchar_t* Path() const { return m_path.c_str(); }

private:
    test_support::TemporaryFolder m_folder;
    std::wstring m_path = m_folder / L"picture.png";
};

void Resize(benchmark::State& state)
{
    const PictureFile file;
    SIZE size = {width, height};
    for (auto _ : state)
        base::Bitmap(ResizeImage(file.Path(), &size));
}

void ResizePlainly(benchmark::State& state)
{
    const PictureFile file;
    for (auto _ : state) {
        Gdiplus::Bitmap image(file.Path());
        Gdiplus::Bitmap scaled(width, height, PixelFormat24bppRGB);
        Gdiplus::Graphics graphics(&scaled);
        graphics.DrawImage(&image, Gdiplus::Rect(0, 0, width, height), 0, 0, width / 2, height / 2,
                           Gdiplus::UnitPixel);
        HBITMAP bitmap = nullptr;
        scaled.GetHBITMAP(Gdiplus::Color(0xFF000000), &bitmap);
        const base::Bitmap owned(bitmap);
    }
}

// A window that covers an ellipse of the screen, or the whole of it.
class Overlay : public CBufferedWnd
{
public:
    explicit Overlay(bool isRect) : m_isRect(isRect) {}
    void PlaceOver(const CRect&) override {}
    void Refresh() override { Invalidate(FALSE); }
    int IsRectMask() override { return m_isRect; }
    void DrawMask(CDC* dc) override
    {
        CRect client;
        GetClientRect(&client);
        dc->FillSolidRect(&client, RGB(0, 0, 0));
        dc->SelectStockObject(WHITE_BRUSH);
        dc->Ellipse(&client);
    }

private:
    bool m_isRect;
};

void PaintOverlay(benchmark::State& state, bool isRect)
{
    CWnd parent;
    parent.CreateEx(WS_EX_TOPMOST | WS_EX_NOACTIVATE, nullptr, L"parent", WS_POPUP | WS_VISIBLE,
                    CRect(0, 0, width, height), nullptr, 0);
    Overlay overlay(isRect);
    overlay.Create(WS_CHILD | WS_VISIBLE, 0, &parent, CRect(0, 0, width, height), 1, L"overlay");
    Pump();
    for (auto _ : state) {
        overlay.Refresh();
        overlay.CallOnPaint();
        GdiFlush();
    }
}

// The time from the call to a shown tip, with the message between the threads' queues.
void RaiseBalloon(benchmark::State& state)
{
    BalloonMessageService::Create();
    const BalloonMessageService service("benchmark", 1, false, BalloonMessageService::warning);
    int i = 0;
    for (auto _ : state) {
        service(60000u, L"Recording", L"%s has %d frames", L"the loop", ++i);
        Pump();
        if (!ShownTip()) state.SkipWithError("no balloon");
    }
    BalloonMessageService::Destroy();
}

void RegisterPictures()
{
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("memcpy", CopyPixels);
    RegisterBenchmark("GrayScaleBitmap/colours", GreyImage, Noise)->UseManualTime();
    RegisterBenchmark("GrayScaleBitmap/greys", GreyImage, Echoes)->UseManualTime();
    RegisterBenchmark("GrayScaleBitmap/per pixel", GreyImagePixelByPixel)->UseManualTime();
    RegisterBenchmark("GrayScale/library", GreyDevice)->UseManualTime();
    RegisterBenchmark("GrayScale/per pixel", GreyDevicePixelByPixel)->UseManualTime();
    RegisterBenchmark("PreMultiply/colour", Blend, false)->UseManualTime();
    RegisterBenchmark("PreMultiply/colour plain", BlendPlainly, false)->UseManualTime();
    RegisterBenchmark("PreMultiply/pixels", Blend, true)->UseManualTime();
    RegisterBenchmark("PreMultiply/pixels plain", BlendPlainly, true)->UseManualTime();
    RegisterBenchmark("Rounded/library", RoundCorners);
    RegisterBenchmark("Rounded/per pixel", RoundCornersPixelByPixel);
    RegisterBenchmark("Rounded/mask by GDI+", DrawMaskAlone);
    RegisterBenchmark("Rounded/pixels alone", MaskPixelByPixel);
    RegisterBenchmark("Bordered/library", Border);
    RegisterBenchmark("Bordered/plain", BorderPlainly);
    RegisterBenchmark("Resize/library", Resize);
    RegisterBenchmark("Resize/plain", ResizePlainly);
}

void PrintRatios(const RatioReporter& reporter)
{
    reporter.PrintRatio("GrayScaleBitmap/per pixel", "GrayScaleBitmap/colours", 20);
    reporter.PrintRatio("GrayScaleBitmap/per pixel", "GrayScaleBitmap/greys", 20);
    reporter.PrintRatio("GrayScale/per pixel", "GrayScale/library", 20);
    reporter.PrintRatio("PreMultiply/colour plain", "PreMultiply/colour");
    reporter.PrintRatio("PreMultiply/pixels plain", "PreMultiply/pixels");
    reporter.PrintRatio("Rounded/per pixel", "Rounded/library");
    reporter.PrintRatio("Rounded/library", "Rounded/mask by GDI+");
    reporter.PrintRatio("Bordered/library", "Bordered/plain", -1.1);
    reporter.PrintRatio("Resize/library", "Resize/plain", -1.1);
    for (const char* const name : {"GrayScaleBitmap/colours", "GrayScaleBitmap/greys",
                                   "PreMultiply/colour", "PreMultiply/pixels"})
        reporter.PrintRatio(name, "memcpy", -4);
    for (const char* const name :
         {"GrayScale/library", "Rounded/library", "Bordered/library", "Resize/library"})
        reporter.PrintRatio(name, "memcpy");
    reporter.PrintRatio("Paint/masked", "Paint/rectangle");
}

} // namespace

int main(int argc, char** argv)
{
    const base::GdiPlusSession session;
    RegisterPictures();
    benchmark::RegisterBenchmark("Paint/masked", PaintOverlay, false);
    benchmark::RegisterBenchmark("Paint/rectangle", PaintOverlay, true);
    benchmark::RegisterBenchmark("Balloon/raised and shown", RaiseBalloon);
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
