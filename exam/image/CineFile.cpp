#include "image/CineFile.h"

#include <algorithm>
#include <climits>

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
    if (std::wstring problem = m_file.Open(path); !problem.empty()) return problem;
    if (std::wstring problem = FindProblem(Description()); !problem.empty()) return problem;
    const std::int64_t held = m_file.PayloadSize() / FrameSize();
    m_frames = Description().count;
    m_complete = m_frames > 0 && m_file.PayloadSize() == FrameSize() * m_frames;
    if (m_frames == 0 || m_frames > held)
        m_frames = static_cast<int>(std::min<std::int64_t>(held, INT_MAX));
    return m_frames > 0 ? L"" : L"the file holds no whole frame";
}

ZelProbe CineFile::Probe() const
{
    const uDataDesc& stream = Description().stream;
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
    const int rate = Description().stream.frameRate; // frames per 1000 s
    return rate > 0 ? rate / 1000.0 : usualFramesPerSecond;
}

std::int64_t CineFile::FrameSize() const
{
    return std::int64_t{Lines()} * Samples();
}

bool CineFile::ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const
{
    if (frame < 0 || frame >= m_frames) return false;
    bytes.resize(static_cast<std::size_t>(FrameSize()));
    return m_file.Read(FrameSize() * frame, bytes);
}

} // namespace exam
