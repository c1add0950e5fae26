#include "image/CineFile.h"

#include "image/CineCheck.h"

#include <algorithm>
#include <climits>

namespace exam {

namespace {

constexpr double usualFramesPerSecond = 30;

} // namespace

std::wstring CineFile::Open(const std::wstring& path)
{
    if (std::wstring problem = m_file.Open(path); !problem.empty()) return problem;
    if (std::wstring problem = FindHeaderProblem(Description()); !problem.empty()) return problem;
    const std::int64_t held = m_file.PayloadSize() / FrameSize();
    m_frames = Description().count;
    if (m_frames == 0 || m_frames > held)
        m_frames = static_cast<int>(std::min<std::int64_t>(held, INT_MAX));
    m_sizeProblem = FindSizeProblem(m_file);
    return m_frames > 0 ? L"" : L"the file holds no whole frame";
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
