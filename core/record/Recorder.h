#pragma once

#include "record/Recording.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace exam {

/// The result of a recording.
struct FinishedRecording
{
    std::wstring path;
    int frames = 0;        ///< 0: the file was removed again
    bool whole = false;    ///< true: the file holds all these frames and can be played
    bool cutShort = false; ///< true: the recording ended because a frame could not be written
};

/// Starts, feeds and ends recordings of what is on display, one at a time.
class Recorder
{
public:
    /// Called at the end of each recording, before Stop() returns.
    using Finished = std::function<void(const FinishedRecording& recording)>;

    /// `paint` paints the screen as it belongs into a movie.
    Recorder(const ExamState& state, Painter paint, Finished finished);
    /// Finishes the recording without telling anybody.
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Sets the folder of the recordings. They are named recording-001.cine, movie-001.avi and so
    /// on, with the next number that is free.
    void SetFolder(const std::wstring& folder) { m_folder = folder; }

    /// Start a recording. The result is a sentence in the current language that says what is
    /// recorded, or why nothing is.
    CString StartRaw();
    CString StartMovie();

    bool IsRecording() const { return m_recording != nullptr; }
    int Frames() const { return m_frames; }

    /// Returns what is known of the running recording. The disk is asked once a second.
    const RunningRecording& Running();

    /// Marks the last recorded frame. The result is a sentence in the current language.
    CString Mark();

    /// Keeps what is on display as the next frame. False when it could not be written; the
    /// recording has ended then.
    bool AddFrame();

    void Stop();

private:
    CString Start(std::unique_ptr<Recording> recording, const wchar_t* name, const char* runningKey,
                  bool isMovie);
    void MeasureRoom();
    void End(bool cutShort);
    static void OnComplete(const wchar_t* path, void* self) noexcept;

    const ExamState& m_state;
    Painter m_paint;
    Finished m_finished;
    std::wstring m_folder;
    std::unique_ptr<Recording> m_recording;
    std::wstring m_path; // file of the recording
    int m_frames = 0;
    RunningRecording m_running;
    std::chrono::steady_clock::time_point m_began;
    bool m_announced = false; // the store has announced the file
};

} // namespace exam
