#pragma once

#include "record/Recording.h"
#include "screen/ScreenContent.h"

#include <functional>
#include <memory>
#include <string>

namespace exam {

/// Starts, feeds and ends recordings of what is on display, one at a time.
class Recorder
{
public:
    /// Is called with the path of each file that was finished, before Stop() returns.
    using Finished = std::function<void(const std::wstring& path)>;

    Recorder(const ScreenContent& content, Finished finished);
    /// Finishes the recording without telling anybody.
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Sets the folder of the recordings. They are named recording-001.cine, movie-001.avi and so
    /// on, with the next number that is free.
    void SetFolder(const std::wstring& folder) { m_folder = folder; }

    /// Start a recording. The result is a sentence in the current language that says what is being
    /// recorded, or why nothing is.
    CString StartRaw();
    CString StartMovie();

    bool IsRecording() const { return m_recording != nullptr; }
    int Frames() const { return m_frames; }

    /// Keeps what is on display as the next frame. False when it could not be written; the
    /// recording has ended then.
    bool AddFrame();

    void Stop();

private:
    CString Start(std::unique_ptr<Recording> recording, const wchar_t* name,
                  const char* runningKey);
    std::wstring NextPath(const wchar_t* name) const;
    static void OnComplete(const wchar_t* path, void* self) noexcept;

    const ScreenContent& m_content;
    Finished m_finished;
    std::wstring m_folder;
    std::unique_ptr<Recording> m_recording;
    int m_frames = 0;
};

} // namespace exam
