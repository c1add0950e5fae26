#pragma once

#include "image/FlowSpectrum.h"
#include "image/RawCine.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace exam {

/// The colours of a picture's pixel.
inline constexpr std::size_t pictureColours = 3;

/// Frames of grey levels that can be shown: those of a recording, or those that a probe makes now.
/// Frames have consecutive numbers.
class FrameSource
{
public:
    FrameSource() = default;
    FrameSource(FrameSource&&) = default;
    FrameSource& operator=(FrameSource&&) = default;
    virtual ~FrameSource() = default;

    virtual const CineDescription& Description() const = 0;
    int Lines() const { return Description().stream.lines; }
    int Samples() const { return Description().stream.samples; }

    /// The frames' own rate, or 30 if they have none.
    double FramesPerSecond() const;

    /// True for a probe that makes frames while it runs. The others have all of them.
    virtual bool IsLive() const { return false; }
    /// Lets a live probe make frames from now on, or no longer.
    virtual void Run(bool) {}

    /// True for pixels of pictures and movies, which have no scale. Nothing is measured on them in
    /// millimetres, and they are no raw recording.
    virtual bool IsPicture() const { return false; }

    /// One sentence that says what of a recording is missing; empty when nothing is.
    virtual std::wstring Problem() const { return {}; }

    /// True for frames of no patient. Whoever shows or records them says so.
    bool IsSimulated() const { return Description().origin == CineOrigin::simulated; }

    /// The number of the oldest frame that there is, and how many there are from it on.
    virtual int FirstFrame() const { return 0; }
    virtual int Frames() const = 0;

    /// Reads the Lines() x Samples() bytes of a frame, line by line; of a picture those of its
    /// blue, its green and its red. False when there is no such frame, or it cannot be read; the
    /// content of `bytes` is of no use then.
    virtual bool ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const = 0;

    /// Closes the file of frames that are not on display, and frees what it took in memory. The
    /// next ReadFrame() opens it again, and is false when the file was changed meanwhile.
    virtual void Rest() const {}

    /// The marked frames, in their order.
    virtual std::span<const int> Marks() const { return {}; }

    /// The last columns of the flow's spectrum, at most this many. None without Doppler.
    virtual FlowSpectrum Flow(int columns) const;
};

} // namespace exam
