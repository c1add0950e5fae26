#pragma once

#include "state/ExamState.h"

#include <Utils_Statics/CCineStore.h>

#include <afxwin.h>

#include <vfw.h>

#include <functional>
#include <memory>
#include <string>

namespace exam {

/// Paints the screen as it belongs into a movie.
using Painter = std::function<void(CDC&)>;

/// A recording that is being made.
class Recording
{
public:
    virtual ~Recording() = default;

    /// Creates the file. False when it cannot be written.
    virtual bool Start(const std::wstring& path) = 0;

    /// Keeps what is on display now as the next frame. False when it cannot be written.
    virtual bool AddFrame() = 0;

    /// The store that writes the file, and finishes and announces it.
    virtual CCineStore& Store() = 0;

    /// True when the finished file holds `frames` frames and can be played.
    virtual bool IsWhole(const std::wstring& path, int frames) const = 0;
};

/// Records the screen as a movie, with the codec of that code (0: uncompressed). State and painter
/// outlive the recording.
std::unique_ptr<Recording> MakeMovieRecording(const ExamState& state, const Painter& paint,
                                              FOURCC codec);

} // namespace exam
