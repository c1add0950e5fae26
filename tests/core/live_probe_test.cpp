// A probe scans a simulated patient, on its real thread.
#include "image/CineFile.h"
#include "image/LiveProbe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <thread>

using namespace exam;
using simulation::ProbeShape;

namespace {

bool WaitUntil(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return condition();
}

int NextFrame(const LiveProbe& probe)
{
    return probe.FirstFrame() + probe.Frames();
}

class LiveProbeTest : public testing::TestWithParam<ProbeShape>
{
protected:
    void RunUntil(int frames)
    {
        m_probe.Run(true);
        ASSERT_TRUE(WaitUntil([&] { return NextFrame(m_probe) >= frames; }));
        m_probe.Run(false);
    }

    LiveProbe m_probe{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Probes, LiveProbeTest,
                         testing::Values(ProbeShape::curved, ProbeShape::linear,
                                         ProbeShape::phased));

} // namespace

TEST_P(LiveProbeTest, IsLiveAndSimulatedAndCanBeShownBeforeItRuns)
{
    EXPECT_TRUE(m_probe.IsLive());
    EXPECT_TRUE(m_probe.IsSimulated());
    EXPECT_EQ(FindHeaderProblem(m_probe.Description()), L"");
    EXPECT_EQ(m_probe.FramesPerSecond(), 30);
    EXPECT_EQ(m_probe.Frames(), 0);
    EXPECT_EQ(m_probe.Flow(100).columns, 0);
    EXPECT_EQ(m_probe.Patient(), nullptr);
    std::vector<std::uint8_t> frame;
    EXPECT_FALSE(m_probe.ReadFrame(0, frame));
    m_probe.Run(false);
    EXPECT_EQ(m_probe.Frames(), 0);
}

TEST_P(LiveProbeTest, ItsFramesAreThoseOfThePatientAtTheirTimes)
{
    RunUntil(5);
    const simulation::Phantom patient(simulation::DefaultSettings(GetParam()));
    std::vector<std::uint8_t> frame;
    for (const int number : {0, 4}) {
        ASSERT_TRUE(m_probe.ReadFrame(number, frame));
        EXPECT_EQ(frame, patient.Frame(number / 30.0)) << number;
    }
    EXPECT_FALSE(m_probe.ReadFrame(-1, frame));
    EXPECT_FALSE(m_probe.ReadFrame(NextFrame(m_probe), frame));
}

TEST_P(LiveProbeTest, ItsSpectraAreThoseOfThePatientAtTheirTimes)
{
    RunUntil(12);
    const FlowSpectrum flow = m_probe.Flow(20);
    ASSERT_EQ(flow.columns, 20);
    const simulation::Phantom patient(simulation::DefaultSettings(GetParam()));
    const simulation::DopplerGate gate = patient.DefaultGate();
    for (int i = 0; i < flow.columns; ++i) {
        const simulation::Spectrum truth =
            patient.Doppler(gate, (flow.firstColumn + i) / 100.0, 1, flow.columnsPerSecond);
        const auto levels = flow.levels.begin() + i * gate.bins;
        EXPECT_TRUE(std::equal(truth.levels.begin(), truth.levels.end(), levels)) << i;
        for (int trace = 0; trace < FlowSpectrum::traceCount; ++trace)
            EXPECT_EQ(flow.traces.at(static_cast<std::size_t>(trace * flow.columns + i)),
                      truth.traces.at(static_cast<std::size_t>(trace)));
    }
    const simulation::ScanPosition middle = patient.PositionOf(gate.place);
    EXPECT_NEAR((flow.gateBegin.x + flow.gateEnd.x) / 2.0, middle.line, 1);
    EXPECT_NEAR((flow.gateBegin.y + flow.gateEnd.y) / 2.0, middle.sample, 1);
    EXPECT_LT(flow.gateBegin.y, flow.gateEnd.y);
    EXPECT_EQ(flow.scale.bins, gate.bins);
    EXPECT_EQ(flow.scale.pulsePeriod, gate.pulsePeriod);
    EXPECT_EQ(flow.scale.frequency, gate.frequency);
    EXPECT_NEAR(std::cos(flow.scale.vesselAngle / 1000.0 * std::acos(-1.0) / 180),
                patient.CosineOfBeam(gate), 1e-4);
}

TEST_P(LiveProbeTest, StandsStillAndGoesOnWhereItWas)
{
    RunUntil(4);
    const int next = NextFrame(m_probe);
    const int columns = m_probe.Flow(LiveProbe::mostColumns).columns;
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    EXPECT_EQ(NextFrame(m_probe), next);
    EXPECT_EQ(m_probe.Flow(LiveProbe::mostColumns).columns, columns);
    RunUntil(next + 3);
    std::vector<std::uint8_t> frame;
    EXPECT_TRUE(m_probe.ReadFrame(next, frame));
}

// Whatever else runs takes processors too, so the rate has no least value here.
TEST(LiveProbe, KeepsTheLastFramesAndMakesAtMostThirtyInASecond)
{
    LiveProbe probe(ProbeShape::linear);
    probe.Run(true);
    ASSERT_TRUE(WaitUntil([&] { return probe.Frames() > 0; }));
    const auto begin = std::chrono::steady_clock::now();
    const int from = NextFrame(probe);
    ASSERT_TRUE(WaitUntil([&] { return NextFrame(probe) >= LiveProbe::mostFrames + 20; }));
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    EXPECT_LT((NextFrame(probe) - from) / taken.count(), 33); // some catch up
    probe.Run(false);
    EXPECT_EQ(probe.Frames(), LiveProbe::mostFrames);
    EXPECT_GE(probe.FirstFrame(), 20);
    std::vector<std::uint8_t> frame;
    EXPECT_TRUE(probe.ReadFrame(probe.FirstFrame(), frame));
    EXPECT_FALSE(probe.ReadFrame(probe.FirstFrame() - 1, frame));
}

TEST(LiveProbe, EndsWhileItRuns)
{
    LiveProbe probe(ProbeShape::phased);
    probe.Run(true);
    EXPECT_TRUE(WaitUntil([&] { return probe.Frames() > 0; })); // its thread is at work
}
