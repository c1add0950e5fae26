#include "commands/Examination.h"

#include "base/NumberedFiles.h"
#include "base/StateChanges.h"
#include "service/PatientForm.h"
#include "service/Terms.h"
#include "study/StudyTexts.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>

namespace exam {

namespace {

constexpr unsigned shortestInterval = 10; // milliseconds
constexpr int mostCaughtUp = 10;          // frames that are shown faster after a delay

} // namespace

Examination::Examination(ExamState& state, ExamWindow& window, const std::wstring& folder)
    : m_state(state), m_window(window),
      m_recorder(
          state, [this](CDC& dc) { m_window.PaintMovie(dc); },
          [this](const FinishedRecording& recording) { RecordingFinished(recording); })
{
    SetFolder(folder);
}

void Examination::SetFolder(const std::wstring& folder)
{
    m_folder = folder;
    m_session.AddRecordings(folder);
    m_recorder.SetFolder(folder);
    m_service.SetFolder(folder);
}

void Examination::ShowPage(std::function<void()> StatusPages::*page) const
{
    if (m_pages.*page) (m_pages.*page)();
}

void Examination::Cancel()
{
    if (m_service.CloseAbout() || m_state.Marks().Cancel()) return;
    if (MouseCapture::IsLocked())
        MouseCapture::Unlock();
    else
        EndRecording();
}

// The question to ask before the study is closed; empty when nothing would be lost.
CString Examination::WhatWouldBeLost()
{
    if (m_study.IsSaved(m_state.Content()) || m_state.Content() == StudyContent()) return {};
    const std::wstring problem = m_study.Save(m_state.Content());
    if (problem.empty()) return {};
    return GetStr("exam.close.unsaved", problem.c_str());
}

void Examination::Leave()
{
    if (m_isAsking) return;
    const CString question = WhatWouldBeLost();
    m_isAsking = true;
    const bool leaves = question.IsEmpty() || m_window.Ask(question);
    m_isAsking = false;
    if (!leaves) return;
    EndRecording();
    m_window.Close();
}

bool PrecisionKeys::Move(int dx, int dy)
{
    if (m_handler) m_handler->OnPrecisionMove(dx, dy);
    return m_handler != nullptr;
}

bool PrecisionKeys::Accept()
{
    if (m_handler) m_handler->OnPrecisionAccept();
    return m_handler != nullptr;
}

void Examination::OpenStudy(const std::wstring& folder)
{
    m_session.SetStudy(folder);
    StudyContent content;
    std::wstring problem = m_study.Open(folder, content);
    const std::wstring missing = m_state.OpenStudy(std::move(content), folder);
    if (problem.empty()) problem = missing;
    if (!problem.empty()) Report(NoticeKind::warning, problem.c_str());
}

bool Examination::SaveStudy()
{
    const std::wstring problem = m_study.Save(m_state.Content());
    if (problem.empty())
        m_state.SetStatus(GetStr("exam.study.saved", m_state.StudyFolder().c_str()));
    else
        Report(NoticeKind::error, problem.c_str());
    return problem.empty();
}

void Examination::SaveChanges()
{
    if (m_study.IsSaved(m_state.Content())) return;
    const std::wstring problem = m_study.Save(m_state.Content());
    if (!problem.empty()) Report(NoticeKind::error, problem.c_str());
}

void Examination::RenameSelected()
{
    const Mark* const mark = FindMark(m_state.Content(), m_state.Marks().Selected());
    if (!mark) return;
    const int number = mark->number;
    const auto text = AskText(GetStr("exam.command.rename"), mark->text.c_str());
    if (!text) return;
    m_state.Document().EndGesture();
    m_state.Document().Rename(number, text->GetString());
    m_state.Marks().Refresh();
}

std::optional<CString> Examination::AskText(const CString& title, const CString& text)
{
    std::vector<FormField> fields = {{.label = GetStr("exam.form.text"), .value = text}};
    const auto nothingWrong = [](const std::vector<FormField>&) { return CString(); };
    if (!m_window.Fill(title, fields, nothingWrong)) return {};
    return fields.front().value;
}

void Examination::Annotate()
{
    const auto text = AskText(GetStr("study.kind.text"), CString());
    if (text && !text->IsEmpty()) m_state.ChooseMark(MarkKind::text, text->GetString());
}

void Examination::AnnotateWithTerm()
{
    const std::vector<std::wstring> terms = AnnotationTerms();
    if (terms.empty()) return m_state.SetStatus(GetStr("exam.terms.none"));
    std::vector<std::wstring> names(terms.size());
    std::ranges::transform(terms, names.begin(), TermText);
    const auto chosen = std::ranges::find(names, m_window.ChooseOneOf(names));
    if (chosen == names.end()) return;
    m_state.ChooseMark(MarkKind::term, terms[static_cast<std::size_t>(chosen - names.begin())]);
}

void Examination::EditPatient()
{
    std::vector<FormField> fields = PatientFields(m_state.Content().patient);
    if (!m_window.Fill(GetStr("exam.command.patient"), fields, FindPatientProblem)) return;
    m_state.Document().EndGesture();
    m_state.Document().SetPatient(PatientOf(fields));
    m_state.Marks().Refresh();
}

void Examination::MovePrecisely(int dx, int dy)
{
    if (!m_precision.Move(dx, dy)) m_state.SetStatus(GetStr("exam.precise.nothing"));
}

void Examination::NextPoint()
{
    if (!m_precision.Accept()) MouseCapture::LockNext();
}

void Examination::ExportTable()
{
    m_state.SetStatus(m_study.WriteTable(m_state.Content(), m_folder));
}

void Examination::ExportReport()
{
    ProgressWindow bar;
    bar.Open(m_window.Owner(), GetStr("exam.export.writing"));
    const auto show = [&bar](std::size_t done, std::size_t all, const std::wstring& name) {
        bar.Step(done, all, name);
        return true;
    };
    m_state.SetStatus(m_study.WriteReport(m_state, m_folder, show));
}

void Examination::Pack()
{
    SaveChanges();
    m_state.SetStatus(m_service.Pack(m_window.Owner(), m_state, StudyImages(), m_talk));
}

void Examination::Unpack()
{
    m_state.SetStatus(m_service.Unpack(m_window.Owner(), m_talk));
}

void Examination::Advance()
{
    if (m_state.HasSource() && m_state.Source().IsLive()) return FollowProbe();
    if (m_recorder.IsRecording() && !m_recorder.AddFrame()) return TellRecording();
    m_state.PlayOn();
    if (m_recorder.IsRecording()) TellRecording();
}

void Examination::FollowProbe()
{
    const int behind = m_state.FramesBehind();
    if (behind == 0) return;
    if (!m_recorder.IsRecording()) return m_state.StepFrames(behind);
    const int newest = m_state.Frame() + behind;
    while (m_state.Frame() < newest) {
        if (m_state.FramePosition() < 0) // the probe has dropped the next frames
            m_state.ShowPosition(1);
        else
            m_state.StepFrames(1);
        if (!m_recorder.AddFrame()) break;
    }
    TellRecording();
}

std::optional<unsigned> Examination::PlayInterval() const
{
    if (!m_state.HasSource() || m_state.IsFrozen()) return {};
    return shortestInterval; // a clock tells which frames are due, and timers are coarse
}

void Examination::Play()
{
    const Clock::time_point now = Clock::now();
    if (!m_state.Source().IsLive()) {
        if (now < m_due) return;
        const double rate = m_state.Source().FramesPerSecond() * m_state.Speed();
        const auto period =
            std::chrono::round<Clock::duration>(std::chrono::duration<double>(1 / rate));
        if (m_due + mostCaughtUp * period < now) m_due = now;
        m_due += period;
    }
    Advance();
}

void Examination::SavePicture()
{
    utilsExam::CreateDirectoryW(m_folder.c_str()); // a missing one shows when the file is written
    const std::wstring path = FindNumbered(m_folder, L"picture-%d.png").next;
    const bool saved = m_window.SavePicture(path);
    m_state.SetStatus(GetStr(saved ? "exam.picture.saved" : "exam.picture.notsaved", path.c_str()));
}

void Examination::OnStateChange(StateChangeType type, unsigned int, long)
{
    if (m_state.IsFrozen()) m_due = {};
    // A recording holds frames of one size.
    if (type == stateFitChanged && m_recorder.IsRecording()) EndRecording();
    if (type == stateImageChanged && !m_state.IsFrameReadable())
        RaiseNotice(NoticeKind::warning, m_state.Status());
}

void Examination::Report(NoticeKind kind, const CString& sentence)
{
    m_state.SetStatus(sentence);
    RaiseNotice(kind, sentence);
}

} // namespace exam
