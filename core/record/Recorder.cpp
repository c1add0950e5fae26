#include "record/Recorder.h"

#include "base/NumberedFiles.h"
#include "image/CineFile.h"
#include "image/CineMarks.h"
#include "image/CineWriting.h"
#include "record/MovieNote.h"
#include "record/MovieSettings.h"

#include <base/Handles.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace exam {

namespace {

constexpr wchar_t movieName[] = L"movie-%03d.avi";

// Video for Windows counts places in movies in 31 bits.
constexpr std::int64_t largestMovie = 0x7FFFFFFF; // bytes

// The size of a file that is being written; 0 when the platform does not tell it.
std::int64_t SizeOf(const std::wstring& path)
{
    const base::File file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size{};
    return file && GetFileSizeEx(file.get(), &size) ? size.QuadPart : 0;
}

// Records the frames on display byte for byte into a raw cine file.
class RawRecording : public Recording
{
public:
    explicit RawRecording(const ExamState& state) : m_state(state) {}

    bool Start(const std::wstring& path) override
    {
        return BeginCine(m_store, path, m_state.Source().Description());
    }

    bool AddFrame() override
    {
        return m_state.Source().ReadFrame(m_state.Frame(), m_frame) &&
               m_store.AddFrame(m_frame.data(), static_cast<int>(m_frame.size()));
    }

    CCineStore& Store() override { return m_store; }

    bool IsWhole(const std::wstring& path, int frames) const override
    {
        RawCine cine;
        return cine.Open(path).empty() && cine.Description().count == frames &&
               FindSizeProblem(cine).empty();
    }

private:
    const ExamState& m_state;
    std::vector<std::uint8_t> m_frame;
    CCineStore m_store;
};

} // namespace

Recorder::Recorder(const ExamState& state, Painter paint, Finished finished)
    : m_state(state), m_paint(std::move(paint)), m_finished(std::move(finished))
{
}

Recorder::~Recorder()
{
    m_finished = nullptr;
    Stop();
}

CString Recorder::StartRaw()
{
    return Start(std::make_unique<RawRecording>(m_state), L"recording-%03d.cine", "exam.record.raw",
                 false);
}

CString Recorder::StartMovie()
{
    // The library refuses a missing codec and an unwritable file alike, so the codec is looked up
    // first.
    const std::optional<std::wstring> codec = PrepareMovieSettings();
    if (!codec) return GetStr("exam.record.nosetting");
    if (!FindCodec(*codec))
        return GetStr("exam.record.nocodec", FindNumbered(m_folder, movieName).next.c_str(),
                      codec->c_str());
    return Start(MakeMovieRecording(m_state, m_paint, CodeOfCodec(*codec)), movieName,
                 "exam.record.movie", true);
}

CString Recorder::Start(std::unique_ptr<Recording> recording, const wchar_t* name,
                        const char* runningKey, bool isMovie)
{
    std::error_code error; // a missing folder shows when the file is created
    std::filesystem::create_directories(m_folder, error);
    m_path = FindNumbered(m_folder, name).next;
    if (!recording->Start(m_path)) return GetStr("exam.record.nofile", m_path.c_str());
    RemoveMarks(m_path); // those of an earlier recording of this name
    recording->Store().SetCompleteCallback(OnComplete, this);
    m_recording = std::move(recording);
    m_frames = 0;
    m_running = {.isMovie = isMovie};
    m_began = std::chrono::steady_clock::now();
    MeasureRoom();
    return GetStr(runningKey);
}

const RunningRecording& Recorder::Running()
{
    const auto elapsed = std::chrono::steady_clock::now() - m_began;
    const std::int64_t seconds = std::chrono::floor<std::chrono::seconds>(elapsed).count();
    m_running.frames = m_frames;
    if (seconds != m_running.seconds) {
        m_running.seconds = seconds;
        MeasureRoom();
    }
    return m_running;
}

void Recorder::MeasureRoom()
{
    ULARGE_INTEGER available{};
    m_running.bytesLeft.reset();
    m_running.secondsLeft.reset();
    if (!GetDiskFreeSpaceExW(m_folder.c_str(), &available, nullptr, nullptr)) return;
    const std::int64_t written = SizeOf(m_path);
    m_running.bytesLeft = static_cast<std::int64_t>(available.QuadPart);
    if (m_running.isMovie) // the smaller one counts
        m_running.bytesLeft = std::min(*m_running.bytesLeft, largestMovie - written);
    if (written > 0 && m_running.seconds > 0)
        m_running.secondsLeft = *m_running.bytesLeft * m_running.seconds / written;
}

CString Recorder::Mark()
{
    const int frame = std::max(0, m_frames - 1);
    return GetStr(AddMark(m_path, frame) ? "exam.record.marked" : "exam.record.unmarked", frame + 1,
                  m_path.c_str());
}

bool Recorder::AddFrame()
{
    if (!m_recording) return false;
    if (m_recording->AddFrame()) {
        ++m_frames;
        return true;
    }
    End(true);
    return false;
}

void Recorder::Stop()
{
    End(false);
}

void Recorder::End(bool cutShort)
{
    const std::unique_ptr<Recording> ended = std::exchange(m_recording, nullptr);
    if (!ended) return;
    m_announced = false;
    ended->Store().EndStorage();
    const bool whole = m_announced && ended->IsWhole(m_path, m_frames);
    // A file without a frame has nothing to keep, and the number is free again.
    if (m_frames == 0) {
        DeleteFileW(m_path.c_str());
        RemoveMarks(m_path);
    }
    if (m_frames == 0 || whole) RemoveNote(m_path); // any other one can be repaired
    if (m_finished) m_finished({m_path, m_frames, whole, cutShort});
}

void Recorder::OnComplete(const wchar_t*, void* self) noexcept
{
    static_cast<Recorder*>(self)->m_announced = true;
}

} // namespace exam
