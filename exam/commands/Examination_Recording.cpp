// The recordings that an examination makes.
#include "commands/Examination.h"

#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/GetStr.h>

namespace exam {

void Examination::ToggleRecording(bool isMovie)
{
    if (m_recorder.IsRecording()) return EndRecording();
    const CString sentence = isMovie ? m_recorder.StartMovie() : m_recorder.StartRaw();
    m_state.SetStatus(sentence);
    if (!m_recorder.IsRecording()) RaiseNotice(NoticeKind::error, sentence);
    TellRecording();
}

void Examination::EndRecording()
{
    m_recorder.Stop();
    TellRecording();
}

void Examination::TellRecording()
{
    const bool isRecording = m_recorder.IsRecording();
    if (isRecording && !m_state.Recording()) {
        m_wasFrozen = m_state.IsFrozen();
        m_state.SetFrozen(false);
    }
    if (!isRecording && m_state.Recording() && m_wasFrozen) m_state.SetFrozen(true);
    CStatusRecording::setState(isRecording);
    std::optional<RunningRecording> recording;
    if (isRecording) recording = m_recorder.Running();
    m_state.SetRecording(recording);
}

void Examination::RecordingFinished(const FinishedRecording& recording)
{
    const wchar_t* const path = recording.path.c_str();
    if (recording.frames > 0) m_finished = recording.path;
    if (recording.frames == 0 && recording.cutShort)
        Report(NoticeKind::warning, GetStr("exam.record.unwritable", path));
    else if (recording.frames == 0)
        Report(NoticeKind::warning, GetStr("exam.record.empty"));
    else if (!recording.whole)
        Report(NoticeKind::error, GetStr("exam.record.damaged", path));
    else if (recording.cutShort)
        Report(NoticeKind::warning, GetStr("exam.record.broken", path, recording.frames));
    else
        Report(NoticeKind::finished, GetStr("exam.record.finished", recording.frames, path));
}

void Examination::MarkRecording()
{
    m_state.SetStatus(m_recorder.Mark());
}

void Examination::OpenFinished()
{
    if (m_finished.empty()) return m_state.SetStatus(GetStr("exam.record.none"));
    OpenImage(m_finished);
}

bool Examination::TellsOfFinished(const CString& sentence) const
{
    return !m_finished.empty() && sentence.Find(m_finished.c_str()) >= 0;
}

void Examination::FollowStatus()
{
    if (TellsOfFinished(m_state.Status())) OpenFinished();
}

} // namespace exam
