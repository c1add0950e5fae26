// The begin of a session, and what is recovered of one that did not end.
#include "commands/Examination.h"

#include "base/NumberedFiles.h"
#include "image/CineProblem.h"
#include "record/Repair.h"

#include <base/Folders.h>
#include <Utils_Statics/GetStr.h>

#include <filesystem>
#include <set>
#include <utility>

namespace exam {

void Examination::BeginSession(const std::wstring& userFolder, const std::wstring& study)
{
    m_lost = m_session.Begin(userFolder);
    std::set<std::wstring> folders = {m_folder};
    if (m_lost) folders.insert(m_lost->recordings.begin(), m_lost->recordings.end());
    for (const std::wstring& folder : folders)
        RepairRecordings(folder);
    if (m_session.IsSecond()) return BeginBeside(study);
    OpenStudy(m_lost ? m_lost->study : study);
}

// Begins a new study beside one that another exam keeps, which would overwrite it otherwise. The
// folder is made at once, so that no third exam takes it.
void Examination::BeginBeside(const std::wstring& study)
{
    const std::wstring patient = std::filesystem::path(study).parent_path().wstring();
    const std::wstring folder = FindNumbered(patient, L"S%d").next;
    base::MakeFolders(folder);
    OpenStudy(folder);
    Report(NoticeKind::warning, GetStr("exam.recovery.second", folder.c_str()));
}

void Examination::RepairRecordings(const std::wstring& folder)
{
    for (const Repaired& repaired : RepairFolder(folder)) {
        const CString path = repaired.path.c_str();
        if (repaired.problem.empty()) {
            m_repaired.push_back(repaired.path);
            Report(NoticeKind::finished,
                   GetStr("exam.repair.done", path.GetString(), repaired.frames));
        } else {
            Report(NoticeKind::warning, GetStr("exam.repair.failed", path.GetString(),
                                               InUsersLanguage(repaired.problem).c_str()));
        }
    }
}

void Examination::OfferRecovery()
{
    const std::optional<LostSession> lost = std::exchange(m_lost, std::nullopt);
    const bool hasNothing = m_state.Content().marks.empty() && m_repaired.empty();
    if (!lost || (hasNothing && lost->report.empty())) return;
    CString question = GetStr("exam.recovery.lost") + L"\n\n";
    question += GetStr("exam.recovery.study", static_cast<int>(m_state.Content().marks.size()),
                       lost->study.c_str()) +
                L"\n";
    for (const std::wstring& path : m_repaired)
        question += GetStr("exam.recovery.recording", path.c_str()) + L"\n";
    if (!lost->report.empty())
        question += GetStr("exam.recovery.report", lost->report.c_str()) + L"\n";
    question += L"\n" + GetStr(lost->report.empty() ? "exam.recovery.goon" : "exam.recovery.both");
    if (!m_window.Offer(question)) {
        const std::wstring patient = std::filesystem::path(lost->study).parent_path().wstring();
        return OpenStudy(FindNumbered(patient, L"S%d").next);
    }
    if (!m_repaired.empty()) OpenImage(m_repaired.back());
    if (!lost->report.empty()) m_window.ShowFile(lost->report);
}

// Opens an unpacked study when the user wants that. What is open is kept before.
void Examination::OfferStudy(const std::wstring& folder)
{
    if (!m_window.Offer(GetStr("exam.archive.open", folder.c_str()))) return;
    SaveChanges();
    const CString lost = WhatWouldBeLost();
    if (lost.IsEmpty() || m_window.Ask(lost)) OpenStudy(folder);
}

void Examination::EndSession()
{
    EndRecording();
    SaveChanges();
    m_session.End();
}

} // namespace exam
