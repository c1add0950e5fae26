#pragma once

#include "image/RawCine.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace exam {

/// A raw cine file of grey levels. Frames are read when they are asked for, so the memory needed
/// does not depend on the size of the file. The file stays open as long as the object lives.
class CineFile
{
public:
    /// Opens `path`. The result is empty, or one sentence that says what is wrong with the file.
    /// The size of the file decides how many frames there are when the header's count is 0, because
    /// the recording was not finished, or larger.
    std::wstring Open(const std::wstring& path);

    const CineDescription& Description() const { return m_file.Description(); }
    int Lines() const { return Description().stream.lines; }
    int Samples() const { return Description().stream.samples; }

    /// The rate at which the recording is played: its own, or 30 if it has none.
    double FramesPerSecond() const;

    int Frames() const { return m_frames; }

    /// In what the size of the file differs from what its header counts: one sentence; empty when
    /// it does not.
    const std::wstring& SizeProblem() const { return m_sizeProblem; }

    /// Reads the Lines() x Samples() bytes of a frame, line by line; `frame` counts from 0. False
    /// when there is no such frame, or it cannot be read; `bytes` holds nothing of use then.
    bool ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const;

private:
    std::int64_t FrameSize() const;

    RawCine m_file;
    int m_frames = 0;
    std::wstring m_sizeProblem;
};

} // namespace exam
