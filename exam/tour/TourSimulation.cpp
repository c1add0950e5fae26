// Station 6: a probe on a simulated patient, live: frames at their rate beside a window that keeps
// answering, the spectrum of the flow, and what is recorded of it.
#include "image/CineFile.h"
#include "tour/TourTruth.h"

#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>

namespace exam {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr double longestBlock = 100; // milliseconds

// Other programs may take both processors for a while. The tour only holds that frames run, and
// prints their rate.
constexpr double busyShare = 0.8; // of one processor
constexpr double leastRate = 10;

// Counts what the window did while it showed a running probe.
struct LiveView
{
    int frames = 0;
    double seconds = 0;
    double longest = 0;     // milliseconds that a message took
    double longestWork = 0; // milliseconds of the processor that the thread took for one
};

// The milliseconds of a processor that this thread has taken.
double WorkOfThread()
{
    FILETIME unused = {};
    FILETIME kernel = {};
    FILETIME user = {};
    GetThreadTimes(GetCurrentThread(), &unused, &unused, &kernel, &user);
    constexpr double perMillisecond = 10000;
    return (kernel.dwLowDateTime + 1.0 * user.dwLowDateTime) / perMillisecond;
}

LiveView Watch(TourContext& context, double seconds)
{
    LiveView view;
    context.HandlePending(); // frames that came meanwhile are not of this time
    const int first = context.state.Frame();
    const Clock::time_point begin = Clock::now();
    while (Clock::now() - begin < std::chrono::duration<double>(seconds)) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        MSG next;
        if (!PeekMessage(&next, nullptr, 0, 0, PM_REMOVE)) continue;
        const Clock::time_point taken = Clock::now();
        const double work = WorkOfThread();
        DispatchMessage(&next);
        view.longest = std::max(view.longest, Milliseconds(Clock::now() - taken).count());
        view.longestWork = std::max(view.longestWork, WorkOfThread() - work);
    }
    view.frames = context.state.Frame() - first;
    view.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    return view;
}

std::wstring Rounded(double value)
{
    return std::to_wstring(std::lround(value));
}

void Live(TourContext& context, SampleSource source, const std::wstring& name)
{
    const ExamState& state = context.state;
    context.state.ShowStrip(true);
    context.state.SelectImage(source);
    context.report.Step(context.WaitUntil([&] { return state.Frame() > 10; }),
                        L"the " + name + L" probe on the simulated patient runs");
    const std::chrono::duration<double> before = TourReport::Worked();
    const LiveView view = Watch(context, 3);
    const std::chrono::duration<double> work = TourReport::Worked() - before;
    const double rate = view.frames / view.seconds;
    // A program that is built with checks is too slow, and has no processor left then.
    const bool isBusy = work.count() > busyShare * view.seconds;
    context.report.Step((rate > leastRate || isBusy) &&
                            rate < state.Source().FramesPerSecond() + 1.5,
                        L"it shows " + Rounded(rate) + L" frames a second" +
                            (rate > leastRate ? L"" : L", and the processor makes no more"));
    context.report.Step(view.longestWork < longestBlock,
                        L"the window works for " + Rounded(view.longestWork) +
                            L" ms at most meanwhile, and is back after " + Rounded(view.longest) +
                            L" ms");
    context.Picture(L"simulated-" + name);
    TourTruth(context, name);
    const int newest = state.Frame();
    context.state.StepFrames(-10);
    context.report.Step(state.Frame() == newest - 10 && state.IsFrameReadable(),
                        L"its last frames can be looked at when it stands still");
}

// The full span of velocities is c / (2 f T cos a).
void Span(TourContext& context)
{
    context.state.ShowStrip(true);
    const FlowScale& scale = context.state.Strip().Flow().scale;
    const double cosine = std::cos(scale.vesselAngle / 1000.0 * std::acos(-1.0) / 180);
    const double span = 1540e6 / (2.0 * scale.frequency * scale.pulsePeriod * cosine);
    const double shown = CDopplerScaling::GetVelPerPixel() *
                         static_cast<double>(CDopplerScaling::GetPWDisplayHeight());
    context.report.Step(span > 0 && std::abs(shown / span - 1) < 1e-3,
                        L"the strip spans the velocities that the pulses allow");
    context.state.ShowStrip(false);
}

void Recorded(TourContext& context)
{
    const std::wstring path = context.folder + L"\\recordings\\recording-001.cine";
    std::error_code error;
    std::filesystem::remove_all(context.folder + L"\\recordings", error); // of an earlier tour
    context.state.SelectImage(simulatedLinear);
    context.Key('C');
    const bool held = context.WaitUntil(
        [&] { return context.state.Recording() && context.state.Recording()->frames >= 20; });
    context.Key('C');
    CineFile cine;
    context.report.Step(held && cine.Open(path).empty() && cine.Frames() >= 20 &&
                            cine.IsSimulated(),
                        L"a recording of it says that it is simulated");
    std::vector<std::uint8_t> frame;
    std::vector<std::uint8_t> next;
    context.report.Step(cine.ReadFrame(0, frame) && cine.ReadFrame(1, next) && frame != next,
                        L"its frames differ, because vessel and blood move");
}

} // namespace

void TourSimulation(TourContext& context)
{
    Live(context, simulatedCurved, L"curved");
    Live(context, simulatedLinear, L"linear");
    Live(context, simulatedPhased, L"phased");
    Span(context);
    Recorded(context);
    context.state.SelectImage(curvedRecording);
    context.state.SetFrozen(true);
}

} // namespace exam
