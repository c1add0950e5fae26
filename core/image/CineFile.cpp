#include "image/CineFile.h"

#include "image/CineMarks.h"
#include "image/ImagingParameters.h"

#include <qor_imgproc/FrameMap.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/ZelProbe.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace exam {

namespace {

constexpr int mostLines = 4096;
constexpr int leastSamples = 2;
constexpr int mostSamples = 65536;
constexpr int mostElements = 65536;
constexpr double mostMicrons = 1e7;            // ten metres, for a probe or a depth
constexpr int mostSector = 360'000;            // thousandths of a degree
constexpr int mostFramesPer1000s = 10'000'000; // ten thousand a second

constexpr wchar_t noFrame[] = L"the file holds no whole frame";
// Reported for numbers that are possible one by one but give no image together.
constexpr wchar_t noGeometry[] = L"the header gives no geometry to show the frames by";

std::wstring FindFrameProblem(const CineDescription& description)
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
    if (stream.frameRate < 0 || stream.frameRate > mostFramesPer1000s)
        return L"the header gives an impossible frame rate";
    return L"";
}

std::wstring FindProbeProblem(const CineDescription& description)
{
    const uDataDesc& stream = description.stream;
    if (stream.probeType < qor_utils::curvedProbe || stream.probeType > qor_utils::phasedProbe)
        return L"the header names an unknown type of probe";
    if (stream.elements < 1 || stream.elements > mostElements)
        return L"the header gives an impossible number of elements";
    const int apertureLines =
        description.apertureLines > 0 ? description.apertureLines : stream.elements;
    if (apertureLines != stream.lines || description.lineOffset != 0)
        return L"the frames are a part of the aperture, which cannot be shown";
    if (stream.pitch < 0 || (stream.pitch == 0 && stream.probeType != qor_utils::phasedProbe))
        return L"the header gives no element pitch";
    if (stream.probeType == qor_utils::curvedProbe && stream.radius == 0)
        return L"the header gives no radius of curvature";
    return L"";
}

// True when everything lies within the range of the pixel arithmetic.
bool IsOfReasonableSize(const CineDescription& description)
{
    const uDataDesc& stream = description.stream;
    const double depth =
        qor_utils::GetSampleSize(stream.samplingFreq, stream.soundSpeed) * stream.samples;
    return depth <= mostMicrons && 1.0 * stream.elements * stream.pitch <= mostMicrons &&
           std::abs(1.0 * stream.radius) <= mostMicrons &&
           1.0 * stream.sectorAngle + description.apexAngle <= mostSector;
}

// The conversion itself tells, with a small image, whether it can show the frames.
bool HasImage(const CineDescription& description)
{
    return qor_imgproc::FrameMap(FitImage(description, CSize(64, 64)).ToScanGeometry()).Valid();
}

std::wstring Bytes(std::int64_t count)
{
    return std::to_wstring(count) + L" bytes";
}

} // namespace

std::wstring FindHeaderProblem(const CineDescription& description)
{
    if (std::wstring problem = FindFrameProblem(description); !problem.empty()) return problem;
    if (std::wstring problem = FindProbeProblem(description); !problem.empty()) return problem;
    return IsOfReasonableSize(description) && HasImage(description) ? L"" : noGeometry;
}

std::wstring OpenToShow(RawCine& cine, const std::wstring& path)
{
    std::wstring problem = cine.Open(path);
    return problem.empty() ? FindHeaderProblem(cine.Description()) : problem;
}

std::wstring FindSizeProblem(const RawCine& cine)
{
    const std::int64_t frameSize = cine.Description().FrameSize().value_or(1);
    const std::int64_t held = cine.PayloadSize() / frameSize;
    const std::int32_t count = cine.Description().count;
    if (count == 0 && held == 0) return noFrame;
    if (count == 0)
        return L"the recording was not finished: its count is 0, and it holds " +
               std::to_wstring(held) + L" whole frames";
    if (cine.PayloadSize() == frameSize * count) return L"";
    return L"the header counts " + std::to_wstring(count) + L" frames of " + Bytes(frameSize) +
           L", but there are " + Bytes(cine.PayloadSize()) + L" behind it (" +
           std::to_wstring(held) + L" whole frames)";
}

std::wstring CineFile::Open(const std::wstring& path)
{
    if (std::wstring problem = OpenToShow(m_file, path); !problem.empty()) return problem;
    const std::int64_t held = m_file.PayloadSize() / FrameSize();
    m_frames = Description().count;
    if (m_frames == 0 || m_frames > held)
        m_frames = static_cast<int>(std::min<std::int64_t>(held, INT_MAX));
    m_sizeProblem = FindSizeProblem(m_file);
    m_marks = ReadMarks(path);
    return m_frames > 0 ? L"" : noFrame;
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
