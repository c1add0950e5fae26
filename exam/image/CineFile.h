#pragma once

#include "image/RawCine.h"

#include <qor_utils/ZelProbe.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace exam {

/// A raw cine file of grey levels, read whole.
class CineFile
{
public:
    /// Reads `path`. The result is empty, or one sentence that says what is wrong with the file.
    /// The size of the file decides how many frames there are when the header's count is 0, because
    /// the recording was not finished, or larger.
    std::wstring Open(const std::wstring& path);

    const CineDescription& Description() const { return m_description; }
    int Lines() const { return m_description.stream.lines; }
    int Samples() const { return m_description.stream.samples; }
    ZelProbe Probe() const;

    /// The rate at which the recording is played: its own, or 30 if it has none.
    double FramesPerSecond() const;

    int Frames() const { return m_frames; }

    /// Whether the header's own count agrees with the size of the file.
    bool IsComplete() const { return m_complete; }

    /// Lines() x Samples() bytes, line by line; `frame` from 0 to Frames() - 1. Valid while the
    /// object is not changed.
    std::span<const std::uint8_t> Frame(int frame) const;

private:
    std::size_t FrameSize() const;

    CineDescription m_description;
    int m_frames = 0;
    bool m_complete = false;
    std::vector<std::uint8_t> m_payload;
};

} // namespace exam
