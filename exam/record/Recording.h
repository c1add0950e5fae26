#pragma once

#include <Utils_Statics/CCineStore.h>

#include <string>

namespace exam {

// Whom a finished file is announced to.
struct Announcement
{
    CCineStore::CompleteCallback callback = nullptr;
    void* userData = nullptr;
};

// A recording under way.
class Recording
{
public:
    virtual ~Recording() = default;

    // Creates the file; false when it cannot be written. Its end is announced only after success.
    virtual bool Start(const std::wstring& path, const Announcement& announcement) = 0;

    // Keeps what is on display now as the next frame; false when it cannot be written.
    virtual bool AddFrame() = 0;

    // Finishes the file and announces it; false when it could not be finished.
    virtual bool Finish() = 0;
};

} // namespace exam
