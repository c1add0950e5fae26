#pragma once

#include "image/CineFile.h"

#include <cstddef>
#include <string>
#include <vector>

namespace exam {

/// The examination: the recordings of the sample study, which of them is on display, and which of
/// its frames.
class Session
{
public:
    /// Reads a recording from the images store and adds it. The result is empty, or one sentence
    /// that says what is wrong.
    std::wstring Add(const std::wstring& name);

    bool IsEmpty() const { return m_recordings.empty(); }
    std::size_t Count() const { return m_recordings.size(); }
    std::size_t Current() const { return m_current; }
    const CineFile& Cine() const { return m_recordings[m_current]; }
    int Frame() const { return m_frame; }

    void Select(std::size_t index);
    void NextImage();
    void NextFrame() { Step(1); }

    /// Moves by a number of frames, backwards when it is negative, and wraps at both ends.
    void Step(int frames);

private:
    std::vector<CineFile> m_recordings;
    std::size_t m_current = 0;
    int m_frame = 0;
};

} // namespace exam
