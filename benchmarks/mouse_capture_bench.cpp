// This compares the arbitration of the pointer, with many handlers of four points, with a plain
// loop over the same points.
//
// - Press/N calls HandleMouse with a button press that grabs the nearest of N handlers' points
//   (LockNearest).
// - PlainLoop/N finds the nearest of the same 4 N points, in one array and without handlers.
// - Forward/N calls HandleMouse with a move while one of N handlers holds the lock.
// - Next/N calls LockNext from handler to handler.
//
// "per 10 handlers" is the time of one message divided by N / 10. The program ends
// with the ratios.
#include "RatioReporter.h"

#include <benchmark/benchmark.h>
#include <Utils_Statics/MouseCapture.h>

#include <array>
#include <climits>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr std::size_t pointsPerHandler = 4;
using Points = std::array<POINT, pointsPerHandler>;

// Does the work of a caliper or box: it adds the points that it keeps.
class Tool : public IMouseHandler
{
public:
    explicit Tool(const Points& points) : m_points(points) { MouseCapture::Register(this); }
    ~Tool() override = default;

    bool OnMouseInput(unsigned int, unsigned int, int x, int y) override
    {
        benchmark::DoNotOptimize(x + y);
        return true;
    }
    void GetAutoPoints(std::vector<POINT>& points) override
    {
        points.insert(points.end(), m_points.begin(), m_points.end());
    }
    void GetBackgroundRect(CRect&) override {}

private:
    Points m_points;
};

// N handlers with random points on an image.
class Scene
{
public:
    Scene(std::size_t count, InputType input)
    {
        std::mt19937 random(static_cast<unsigned int>(count));
        MouseCapture::Initialize(CRect(0, 0, 1000, 800), input);
        for (std::size_t i = 0; i < count; ++i) {
            Points points;
            for (POINT& point : points) {
                point = {static_cast<LONG>(random() % 1000), static_cast<LONG>(random() % 800)};
                all.push_back(point);
            }
            m_tools.push_back(std::make_unique<Tool>(points));
        }
    }
    ~Scene() { MouseCapture::Unlock(); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    Tool* First() { return m_tools.front().get(); }

    std::vector<POINT> all;

private:
    std::vector<std::unique_ptr<Tool>> m_tools;
};

// The presses wander over the image.
POINT PressAt(unsigned int i)
{
    return {static_cast<LONG>(i * 37 % 1000), static_cast<LONG>(i * 91 % 800)};
}

std::size_t NearestOf(const std::vector<POINT>& points, POINT pt)
{
    std::size_t best = points.size();
    int bestDistance = 10000;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const int dx = points[i].x - pt.x, dy = points[i].y - pt.y;
        const int distance = dx * dx + dy * dy;
        if (distance >= bestDistance) continue;
        bestDistance = distance;
        best = i;
    }
    return best;
}

// Gives the time of one message a counter for each 10 handlers.
template <typename Message>
void Measure(benchmark::State& state, Message message)
{
    unsigned int i = 0;
    for ([[maybe_unused]] auto _ : state)
        message(i++);
    using Counter = benchmark::Counter;
    state.counters["per 10 handlers"] =
        Counter(static_cast<double>(state.range(0)) / 10,
                Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void Press(benchmark::State& state)
{
    const Scene scene(static_cast<std::size_t>(state.range(0)), InputPointer);
    Measure(state, [](unsigned int i) {
        benchmark::DoNotOptimize(MouseCapture::HandleMouse(WM_LBUTTONDOWN, MK_LBUTTON, PressAt(i)));
    });
}

void PlainLoop(benchmark::State& state)
{
    const Scene scene(static_cast<std::size_t>(state.range(0)), InputPointer);
    Measure(state,
            [&](unsigned int i) { benchmark::DoNotOptimize(NearestOf(scene.all, PressAt(i))); });
}

void Forward(benchmark::State& state)
{
    Scene scene(static_cast<std::size_t>(state.range(0)), InputTrackball);
    MouseCapture::Lock(scene.First(), 0);
    Measure(state, [](unsigned int i) {
        benchmark::DoNotOptimize(MouseCapture::HandleMouse(WM_MOUSEMOVE, 0, PressAt(i)));
    });
}

void Next(benchmark::State& state)
{
    Scene scene(static_cast<std::size_t>(state.range(0)), InputTrackball);
    Measure(state, [&](unsigned int) {
        MouseCapture::Lock(scene.First(), INT_MAX - 1); // no further point: on to the next handler
        benchmark::DoNotOptimize(MouseCapture::LockNext());
    });
}

BENCHMARK(PlainLoop)->Arg(10)->Arg(100)->Arg(1000)->UseRealTime();
BENCHMARK(Press)->Arg(10)->Arg(100)->Arg(1000)->UseRealTime();
BENCHMARK(Forward)->Arg(10)->Arg(100)->Arg(1000)->UseRealTime();
BENCHMARK(Next)->Arg(10)->Arg(1000)->UseRealTime();

void PrintRatios(const RatioReporter& reporter)
{
    for (const int handlers : {10, 100, 1000})
        reporter.PrintRatioAt(handlers, "Press", "PlainLoop");
}

} // namespace

int main(int argc, char** argv)
{
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
