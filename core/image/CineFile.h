#pragma once

#include "image/FrameSource.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace exam {

/// A raw cine file of grey levels. Frames are read on demand, so the memory needed does not depend
/// on the size of the file.
class CineFile : public FrameSource
{
public:
    /// Opens `path`. The result is empty, or one sentence that says what is wrong with the file.
    /// The size of the file gives the number of frames in two cases: when the header's count is 0
    /// because the recording was not finished, and when that count is larger than what the file
    /// holds.
    std::wstring Open(const std::wstring& path);

    const CineDescription& Description() const override { return m_file.Description(); }
    int Frames() const override { return m_frames; }

    /// One sentence that says how the size of the file differs from its header's count; empty when
    /// it does not.
    std::wstring Problem() const override { return m_sizeProblem; }

    std::span<const int> Marks() const override { return m_marks; }

    bool ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const override;
    void Rest() const override { m_file.Rest(); }

private:
    std::int64_t FrameSize() const;

    RawCine m_file;
    int m_frames = 0;
    std::wstring m_sizeProblem;
    std::vector<int> m_marks;
};

/// One sentence that says why frames with this header cannot be shown; empty when they can.
std::wstring FindHeaderProblem(const CineDescription& description);

/// Opens a raw cine whose frames can be shown. The result is empty, or one sentence that says what
/// is wrong with the file.
std::wstring OpenToShow(RawCine& cine, const std::wstring& path);

/// One sentence that says how the size of a file differs from its header's count; empty when it
/// does not. The header must be one without a problem.
std::wstring FindSizeProblem(const RawCine& cine);

} // namespace exam
