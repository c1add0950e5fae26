#include "image/LiveProbe.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <utility>

namespace exam {

namespace {

// A thread that is later than this gives up the time that was lost.
constexpr std::chrono::milliseconds latest{100};

CineDescription Describe(const simulation::Acquisition& acquisition)
{
    CineDescription cine;
    cine.stream.lines = acquisition.lines;
    cine.stream.samples = acquisition.samples;
    cine.stream.bitsPerSample = 8;
    cine.stream.samplingFreq = acquisition.samplingFreq;
    cine.stream.soundSpeed = acquisition.soundSpeed;
    cine.stream.probeType = static_cast<std::int32_t>(acquisition.probe);
    cine.stream.elements = acquisition.elements;
    cine.stream.pitch = acquisition.pitch;
    cine.stream.radius = acquisition.radius;
    cine.stream.sectorAngle = acquisition.sectorAngle;
    cine.stream.frameRate = acquisition.frameRate;
    cine.apertureLines = acquisition.lines;
    cine.origin = CineOrigin::simulated;
    return cine;
}

FlowScale ScaleOf(const simulation::Phantom& patient, const simulation::DopplerGate& gate)
{
    const double angle = std::acos(patient.CosineOfBeam(gate)) * 180 / std::numbers::pi;
    return {gate.pulsePeriod, gate.frequency, gate.bins,
            static_cast<int>(std::lround(angle * 1000))};
}

// The scan line and sample of a place on the gate's beam, in parts of the gate's length from its
// middle.
UPoint EndOf(const simulation::Phantom& patient, const simulation::DopplerGate& gate, double part)
{
    const double angle = gate.beamAngle * std::numbers::pi / 180;
    const double way = part * gate.length;
    const simulation::ScanPosition end = patient.PositionOf(
        {gate.place.x + way * std::sin(angle), gate.place.y + way * std::cos(angle)});
    return {static_cast<int>(std::lround(end.line)), static_cast<int>(std::lround(end.sample))};
}

} // namespace

LiveProbe::LiveProbe(simulation::ProbeShape shape)
    : m_shape(shape), m_description(Describe(simulation::DefaultSettings(shape).acquisition))
{
}

void LiveProbe::Run(bool runs)
{
    {
        const std::lock_guard guard(m_lock);
        m_runs = runs;
    }
    m_wake.notify_one();
    if (runs && !m_thread.joinable())
        m_thread = std::jthread([this](const std::stop_token& stop) { Work(stop); });
}

int LiveProbe::FirstFrame() const
{
    const std::lock_guard guard(m_lock);
    return m_nextFrame - static_cast<int>(m_frames.size());
}

int LiveProbe::Frames() const
{
    const std::lock_guard guard(m_lock);
    return static_cast<int>(m_frames.size());
}

bool LiveProbe::ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const
{
    const std::lock_guard guard(m_lock);
    const int first = m_nextFrame - static_cast<int>(m_frames.size());
    if (frame < first || frame >= m_nextFrame) return false;
    bytes = m_frames[static_cast<std::size_t>(frame - first)];
    return true;
}

FlowSpectrum LiveProbe::Flow(int columns) const
{
    const std::lock_guard guard(m_lock);
    FlowSpectrum flow;
    flow.scale = m_scale;
    flow.gateBegin = m_gateBegin;
    flow.gateEnd = m_gateEnd;
    flow.columns = std::clamp<int>(columns, 0, static_cast<int>(m_columns.size()));
    flow.firstColumn = m_nextColumn - flow.columns;
    flow.columnsPerSecond = columnsPerSecond;
    const std::size_t count = static_cast<std::size_t>(flow.columns);
    flow.traces.resize(count * FlowSpectrum::traceCount);
    auto column = m_columns.end() - flow.columns;
    for (std::size_t i = 0; i < count; ++i, ++column) {
        flow.levels.insert(flow.levels.end(), column->levels.begin(), column->levels.end());
        for (std::size_t trace = 0; trace < FlowSpectrum::traceCount; ++trace)
            flow.traces[trace * count + i] = column->traces[trace];
    }
    return flow;
}

const simulation::Phantom* LiveProbe::Patient() const
{
    const std::lock_guard guard(m_lock);
    return m_patient;
}

void LiveProbe::Work(const std::stop_token& stop)
{
    m_made = std::make_unique<simulation::Phantom>(simulation::DefaultSettings(m_shape));
    m_gate = m_made->DefaultGate();
    {
        const std::lock_guard guard(m_lock);
        m_scale = ScaleOf(*m_made, m_gate);
        m_gateBegin = EndOf(*m_made, m_gate, -0.5);
        m_gateEnd = EndOf(*m_made, m_gate, 0.5);
        m_patient = m_made.get();
    }
    m_due = Clock::now();
    while (WaitForTurn(stop)) {
        MakeFrame();
        MakeColumns();
    }
}

// Waits until the probe runs and its next frame is due. False when the thread shall end.
bool LiveProbe::WaitForTurn(const std::stop_token& stop)
{
    std::unique_lock guard(m_lock);
    while (m_wake.wait(guard, stop, [this] { return m_runs; }) && !stop.stop_requested()) {
        m_due = std::max(m_due, Clock::now() - latest);
        const bool isHeld = m_wake.wait_until(guard, stop, m_due, [this] { return !m_runs; });
        if (isHeld || stop.stop_requested()) continue;
        m_due += std::chrono::microseconds(std::lround(1e6 / FramesPerSecond()));
        return true;
    }
    return false;
}

void LiveProbe::MakeFrame()
{
    std::vector<std::uint8_t> frame = m_made->Frame(m_nextFrame / FramesPerSecond());
    const std::lock_guard guard(m_lock);
    if (!m_runs) return; // what was frozen meanwhile stays as it is
    m_frames.push_back(std::move(frame));
    if (m_frames.size() > mostFrames) m_frames.pop_front();
    ++m_nextFrame;
}

// Makes the columns up to the time of the last frame, each at its own time, so that they do not
// depend on the frames.
void LiveProbe::MakeColumns()
{
    const int end = static_cast<int>(1.0 * m_nextFrame * columnsPerSecond / FramesPerSecond());
    std::vector<Column> made;
    for (int column = m_nextColumn; column < end; ++column) {
        const double time = 1.0 * column / columnsPerSecond;
        simulation::Spectrum spectrum = m_made->Doppler(m_gate, time, 1, columnsPerSecond);
        made.push_back({std::move(spectrum.levels), std::move(spectrum.traces)});
    }
    const std::lock_guard guard(m_lock);
    if (!m_runs) return;
    for (Column& column : made) {
        m_columns.push_back(std::move(column));
        if (m_columns.size() > mostColumns) m_columns.pop_front();
    }
    m_nextColumn = end;
}

} // namespace exam
