#pragma once

#include <Utils_Statics/CCineStore.h>

#include <afxwin.h>

#include <functional>
#include <string>

namespace exam {

// The function that is told of a finished file.
struct Announcement
{
    CCineStore::CompleteCallback callback = nullptr;
    void* userData = nullptr;
};

// Paints the screen as it belongs into a movie.
using Painter = std::function<void(CDC&)>;

// A recording that is being made.
class Recording
{
public:
    virtual ~Recording() = default;

    // Creates the file. False when it cannot be written; its end is not announced then.
    virtual bool Start(const std::wstring& path, const Announcement& announcement) = 0;

    // Keeps what is on display now as the next frame. False when it cannot be written.
    virtual bool AddFrame() = 0;

    // Finishes the file and announces it. False when it could not be finished.
    virtual bool Finish() = 0;

    // True when the finished file holds `frames` frames and can be played.
    virtual bool IsWhole(const std::wstring& path, int frames) const = 0;
};

} // namespace exam
