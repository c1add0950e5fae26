#include "record/Recorder.h"

#include "base/NumberedFiles.h"
#include "image/CineFile.h"
#include "record/MovieNote.h"
#include "record/MovieSettings.h"

#include <Utils_Statics/GetStr.h>

#include <filesystem>
#include <utility>

namespace exam {

namespace {

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
    return Start(std::make_unique<RawRecording>(m_state), L"recording-%03d.cine",
                 "exam.record.raw");
}

CString Recorder::StartMovie()
{
    // The library refuses a missing codec and an unwritable file alike, so the codec is looked up
    // first.
    const std::optional<std::wstring> codec = PrepareMovieSettings();
    if (!codec) return GetStr("exam.record.nosetting");
    if (!FindCodec(*codec)) return GetStr("exam.record.nocodec", codec->c_str());
    return Start(MakeMovieRecording(m_state, m_paint, CodeOfCodec(*codec)), L"movie-%03d.avi",
                 "exam.record.movie");
}

CString Recorder::Start(std::unique_ptr<Recording> recording, const wchar_t* name,
                        const char* runningKey)
{
    std::error_code error; // a missing folder shows when the file is created
    std::filesystem::create_directories(m_folder, error);
    m_path = FindNumbered(m_folder, name).next;
    if (!recording->Start(m_path)) return GetStr("exam.record.nofile", m_path.c_str());
    recording->Store().SetCompleteCallback(OnComplete, this);
    m_recording = std::move(recording);
    m_frames = 0;
    return GetStr(runningKey);
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
    if (m_frames == 0) DeleteFileW(m_path.c_str());
    if (m_frames == 0 || whole) RemoveNote(m_path); // any other one can be repaired
    if (m_finished) m_finished({m_path, m_frames, whole, cutShort});
}

void Recorder::OnComplete(const wchar_t*, void* self) noexcept
{
    static_cast<Recorder*>(self)->m_announced = true;
}

} // namespace exam
