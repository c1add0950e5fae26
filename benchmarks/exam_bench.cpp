// This paints the sample application's window at 1920 x 1080 pixels, zooms, and opens and plays
// recordings. It counts the processor time of the thread that does it.
#include "../tests/exam/LargeCine.h"
#include "base/ScreenLayout.h"
#include "image/CineFile.h"
#include "overlay/Overlays.h"
#include "RatioReporter.h"
#include "record/PixelCanvas.h"
#include "screen/Screen.h"
#include "window/MainWindow.h"

#include <base/GdiPlusSession.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <zel_string_convert/TableLoading.h>

#include <psapi.h>

#include <chrono>

CWinApp theApplication(L"exam bench");

namespace {

using namespace exam;

constexpr CSize fullHd(1920, 1080);

// The seconds of a processor that this thread has taken.
double WorkOfThread()
{
    FILETIME unused = {};
    FILETIME kernel = {};
    FILETIME user = {};
    GetThreadTimes(GetCurrentThread(), &unused, &unused, &kernel, &user);
    const auto ticks = [](const FILETIME& time) {
        return static_cast<double>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    };
    return (ticks(kernel) + ticks(user)) / 1e7;
}

// Measures what a call takes; the clock of a thread is coarse, so it is called several times.
template <class Call>
void Measure(benchmark::State& state, const Call& call)
{
    constexpr int calls = 25;
    for (auto _ : state) {
        const double before = WorkOfThread();
        for (int i = 0; i < calls; ++i)
            call();
        state.SetIterationTime((WorkOfThread() - before) / calls);
    }
}

// The application's state and windows, with a recording on display.
class Window
{
public:
    explicit Window(CSize size)
    {
        zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings"));
        qor_utils::SetStoreFolder(qor_utils::imagesStore,
                                  test_support::BesideProgram(L"sample\\images"));
        m_state.AddRecording(L"curved.cine");
        m_state.SetLayout(WindowLayout({size, 96, true, false}), CPoint(0, 0));
        m_parent.CreateEx(0, nullptr, L"parent", WS_POPUP, CRect(CPoint(0, 0), size), nullptr, 0);
        m_overlays.Open(m_parent);
    }
    ~Window() { m_parent.DestroyWindow(); }

    ExamState& State() { return m_state; }

    void Paint(CDC& dc)
    {
        DrawScreen(dc, m_state, ScreenUse::display);
        m_overlays.DrawAll(dc);
    }

private:
    base::GdiPlusSession m_gdiPlus;
    ExamState m_state;
    Overlays m_overlays{m_state, {}};
    CWnd m_parent;
};

void Repaint(benchmark::State& state)
{
    Window window(fullHd);
    PixelCanvas screen(fullHd);
    Measure(state, [&] {
        PixelCanvas buffer(fullHd);
        window.Paint(buffer.Context());
        screen.Context().BitBlt(0, 0, fullHd.cx, fullHd.cy, &buffer.Context(), 0, 0, SRCCOPY);
    });
}

// Repaints what follows a frame alone.
void RepaintFrame(benchmark::State& state)
{
    Window window(fullHd);
    PixelCanvas screen(fullHd);
    const ScreenLayout& layout = window.State().Layout();
    const base::Region part(CreateRectRgnIndirect(&layout.imageArea));
    for (const CRect& other : {layout.panel, layout.timeline}) {
        const base::Region more(CreateRectRgnIndirect(&other));
        CombineRgn(part.get(), part.get(), more.get(), RGN_OR);
    }
    SelectClipRgn(screen.Context(), part.get());
    Measure(state, [&] {
        PixelCanvas buffer(fullHd);
        SelectClipRgn(buffer.Context(), part.get());
        window.Paint(buffer.Context());
        screen.Context().BitBlt(0, 0, fullHd.cx, fullHd.cy, &buffer.Context(), 0, 0, SRCCOPY);
    });
}

// Moves as many pixels as a repaint does, and nothing else.
void RepaintPlain(benchmark::State& state)
{
    Window window(fullHd);
    PixelCanvas screen(fullHd);
    Measure(state, [&] {
        PixelCanvas buffer(fullHd);
        buffer.Context().FillSolidRect(0, 0, fullHd.cx, fullHd.cy, RGB(1, 2, 3));
        window.State().View().Paint(buffer.Context(), window.State().Layout().image.TopLeft());
        screen.Context().BitBlt(0, 0, fullHd.cx, fullHd.cy, &buffer.Context(), 0, 0, SRCCOPY);
    });
}

const FrameSource& Recording()
{
    static CineFile cine;
    if (cine.Frames() == 0) cine.Open(test_support::BesideProgram(L"sample\\images\\curved.cine"));
    return cine;
}

constexpr CSize zoomed(1600, 800);

void Zoom(benchmark::State& state)
{
    ImageView view;
    view.SetSource(Recording(), zoomed);
    double factor = 1.25;
    Measure(state, [&] {
        view.ZoomAt(factor, {700, 300});
        view.Show(Recording(), 0);
        factor = 1 / factor;
    });
}

void ZoomPlain(benchmark::State& state)
{
    ImageView view;
    view.SetSource(Recording(), zoomed);
    std::vector<std::uint8_t> frame;
    std::vector<std::uint8_t> grey(static_cast<std::size_t>(zoomed.cx) * zoomed.cy);
    Recording().ReadFrame(0, frame);
    Measure(state, [&] {
        const ImagingParameters& image = view.Parameters();
        const qor_imgproc::FrameMap map(image.ToScanGeometry());
        benchmark::DoNotOptimize(image.Mask());
        map.Convert(frame.data(), grey.data());
    });
}

// Makes the image of a frame.
void Show(benchmark::State& state, const Orientation& orientation)
{
    ImageView view;
    view.SetOrientation(orientation);
    view.SetSource(Recording(), zoomed);
    Measure(state, [&] { view.Show(Recording(), 0); });
}

// A recording of 600 MB that takes no room on the disk.
class LargeRecording
{
public:
    static constexpr int frames = 1200;

    LargeRecording() { large_cine::WriteLargeCine(Path(), frames, 256, 2048); }
    std::wstring Path() const { return m_folder / L"large.cine"; }

private:
    test_support::TemporaryFolder m_folder;
};

void Open(benchmark::State& state)
{
    const LargeRecording recording;
    Window window(fullHd);
    for (auto _ : state) {
        ExamState exam;
        exam.SetLayout(window.State().Layout(), CPoint(0, 0));
        exam.OpenImage(recording.Path());
        if (exam.Source().Frames() != LargeRecording::frames) state.SkipWithError("not opened");
    }
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    state.counters["MB"] = static_cast<double>(memory.PeakWorkingSetSize) / 1e6;
}

// Plays 1,000 frames in a window of its own, by its timer. The time is that of a frame.
void Play(benchmark::State& state)
{
    constexpr int played = 1000;
    const LargeRecording recording;
    const test_support::TemporaryFolder folder;
    Window sample(fullHd); // whose texts and images are used
    ExamState exam;
    exam.AddRecording(L"curved.cine");
    MainWindow window(exam, folder.Path());
    window.Open(WindowForm::window);
    window.MoveWindow(0, 0, 1280, 1000);
    window.Exam().OpenImage(recording.Path());
    int skipped = 0;
    for (auto _ : state) {
        exam.ShowPosition(1);
        const auto begin = std::chrono::steady_clock::now();
        exam.SetFrozen(false);
        for (int seen = 1; seen < played;) {
            MSG next;
            if (GetMessage(&next, nullptr, 0, 0) <= 0) break;
            DispatchMessage(&next);
            if (exam.FramePosition() > seen + 1) ++skipped;
            seen = exam.FramePosition();
        }
        exam.SetFrozen(true);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(taken.count() / played);
    }
    state.counters["skipped"] = skipped;
    window.DestroyWindow();
}

// The time that there is, told as if it had been measured.
void Budget(benchmark::State& state, double seconds)
{
    for (auto _ : state)
        state.SetIterationTime(seconds);
}

void Register(const char* name, void (*run)(benchmark::State&))
{
    benchmark::RegisterBenchmark(name, run)->UseManualTime()->Unit(benchmark::kMillisecond);
}

void PrintRatios(const RatioReporter& reporter)
{
    reporter.PrintRatio("16 ms", "repaint", 1);
    reporter.PrintRatio("repaint", "repaint: pixels alone");
    reporter.PrintRatio("repaint", "a frame's repaint");
    reporter.PrintRatio("zoom: map and mask at once", "zoom");
    reporter.PrintRatio("an upright frame", "a turned frame");
    reporter.PrintRatio("1 s", "open 600 MB", 1);
    reporter.PrintRatio("play: a frame", "1/30 s", -1.01);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::RegisterBenchmark("16 ms", Budget, 0.016)->UseManualTime();
    Register("repaint", Repaint);
    Register("repaint: pixels alone", RepaintPlain);
    Register("zoom", Zoom);
    Register("a frame's repaint", RepaintFrame);
    Register("an upright frame", [](benchmark::State& state) { Show(state, {}); });
    Register("a turned frame", [](benchmark::State& state) { Show(state, {true, false, 1}); });
    benchmark::RegisterBenchmark("1 s", Budget, 1)->UseManualTime()->Iterations(1);
    benchmark::RegisterBenchmark("open 600 MB", Open)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("1/30 s", Budget, 1.0 / 30)->UseManualTime()->Iterations(1);
    benchmark::RegisterBenchmark("play: a frame", Play)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    Register("zoom: map and mask at once", ZoomPlain);
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
