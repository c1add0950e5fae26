#include "image/CineFile.h"

namespace exam {

namespace {

constexpr int mostLines = 4096;
constexpr int leastSamples = 2;
constexpr int mostSamples = 65536;
constexpr double usualFramesPerSecond = 30;

// Why frames of this description are not shown; empty when they are.
std::wstring FindProblem(const CineDescription& description)
{
    const uDataDesc& stream = description.stream;
    if (description.type != uDataBMode) return L"the file does not hold B-mode frames";
    if (stream.bitsPerSample != 8) return L"only frames of 8 bits a sample are shown";
    if (stream.lines < 1 || stream.lines > mostLines || stream.samples < leastSamples ||
        stream.samples > mostSamples)
        return L"the header gives an impossible frame size";
    if (description.count < 0) return L"the header gives a negative count";
    if (stream.samplingFreq <= 0 || stream.soundSpeed <= 0)
        return L"the header gives no sampling frequency or no speed of sound";
    return L"";
}

} // namespace

std::wstring CineFile::Open(const std::wstring& path)
{
    RawCine raw;
    if (std::wstring problem = raw.Open(path); !problem.empty()) return problem;
    m_description = raw.Description();
    if (std::wstring problem = FindProblem(m_description); !problem.empty()) return problem;

    m_payload.resize(static_cast<std::size_t>(raw.PayloadSize()));
    if (!raw.Read(0, m_payload)) return L"the file cannot be read";
    const std::size_t held = m_payload.size() / FrameSize();
    m_frames = m_description.count;
    m_complete =
        m_frames > 0 && m_payload.size() == FrameSize() * static_cast<std::size_t>(m_frames);
    if (m_frames == 0 || static_cast<std::size_t>(m_frames) > held)
        m_frames = static_cast<int>(held);
    return m_frames > 0 ? L"" : L"the file holds no whole frame";
}

ZelProbe CineFile::Probe() const
{
    const uDataDesc& stream = m_description.stream;
    ZelProbe probe{};
    probe.type = stream.probeType;
    probe.elements = stream.elements;
    probe.pitch = stream.pitch;
    probe.radius = stream.radius;
    probe.sectorAngle = stream.sectorAngle;
    return probe;
}

double CineFile::FramesPerSecond() const
{
    const int rate = m_description.stream.frameRate; // frames per 1000 s
    return rate > 0 ? rate / 1000.0 : usualFramesPerSecond;
}

std::size_t CineFile::FrameSize() const
{
    return static_cast<std::size_t>(Lines()) * static_cast<std::size_t>(Samples());
}

std::span<const std::uint8_t> CineFile::Frame(int frame) const
{
    if (frame < 0 || frame >= m_frames) return {};
    return std::span(m_payload).subspan(FrameSize() * static_cast<std::size_t>(frame), FrameSize());
}

} // namespace exam
