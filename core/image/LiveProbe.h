#pragma once

#include "image/FrameSource.h"

#include <phantom/Phantom.h>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace exam {

/// A probe on a simulated patient (docs/phantom.md). While it runs, a thread of its own makes
/// frames at the probe's rate, and the spectrum of the flow. The last ones are kept, so that they
/// can be looked at when it stands still.
///
/// Frame `n` shows the patient `n / FramesPerSecond()` seconds after the beginning. A thread that
/// is late goes on from where it is, so the patient is slow then and no frame is left out.
class LiveProbe : public FrameSource
{
public:
    static constexpr int mostFrames = 100;
    static constexpr int mostColumns = 1000;
    static constexpr int columnsPerSecond = 100;

    explicit LiveProbe(simulation::ProbeShape shape);
    bool IsLive() const override { return true; }
    /// The patient is made the first time, which takes the thread a moment.
    void Run(bool runs) override;

    const CineDescription& Description() const override { return m_description; }
    int FirstFrame() const override;
    int Frames() const override;
    bool ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const override;
    FlowSpectrum Flow(int columns) const override;

    /// The patient, who knows the truth; null before the first frame.
    const simulation::Phantom* Patient() const;

private:
    using Clock = std::chrono::steady_clock;
    struct Column
    {
        std::vector<unsigned char> levels;
        std::vector<unsigned char> traces;
    };

    void Work(const std::stop_token& stop);
    bool WaitForTurn(const std::stop_token& stop);
    void MakeFrame();
    void MakeColumns();

    simulation::ProbeShape m_shape;
    CineDescription m_description;

    // The worker's own.
    std::unique_ptr<const simulation::Phantom> m_made;
    simulation::DopplerGate m_gate;
    Clock::time_point m_due; // of the next frame

    mutable std::mutex m_lock; // guards all below
    std::condition_variable_any m_wake;
    bool m_runs = false;
    const simulation::Phantom* m_patient = nullptr;
    FlowScale m_scale;
    UPoint m_gateBegin;
    UPoint m_gateEnd;
    std::deque<std::vector<std::uint8_t>> m_frames;
    int m_nextFrame = 0;
    std::deque<Column> m_columns;
    int m_nextColumn = 0;

    std::jthread m_thread; // the last member, so it ends before the others do
};

} // namespace exam
