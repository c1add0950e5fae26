#include "service/ServiceDesk.h"

#include "base/FileReader.h"
#include "base/NumberedFiles.h"
#include "image/CineProblem.h"
#include "record/StudyFiles.h"
#include "service/WorkWithProgress.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <filesystem>

namespace exam {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t archiveName[] = L"study-%03d.zip";

CString ResultText(const ArchiveResult& result, const char* doneKey, const std::wstring& place)
{
    if (result.isCancelled) return GetStr("exam.archive.cancelled", static_cast<int>(result.files));
    if (!result.problem.empty())
        return GetStr("exam.archive.failed", InUsersLanguage(result.problem).c_str());
    return GetStr(doneKey, static_cast<int>(result.files), place.c_str());
}

const char* ReasonKey(SkipReason reason)
{
    switch (reason) {
    case SkipReason::name: return "exam.archive.skipped.name";
    case SkipReason::missing: return "exam.archive.skipped.missing";
    default: return "exam.archive.skipped.file";
    }
}

// Names what was skipped, and why.
CString SkippedText(const char* titleKey, const std::vector<SkippedEntry>& skipped)
{
    constexpr std::size_t most = 20; // that a box has room for
    CString text = GetStr(titleKey, static_cast<int>(skipped.size())) + L"\n";
    for (std::size_t i = 0; i < std::min(most, skipped.size()); ++i)
        text += L"\n" + GetStr(ReasonKey(skipped[i].reason), skipped[i].name.c_str());
    return skipped.size() > most ? text + L"\n..." : text;
}

// The folder of the study among unpacked files; empty when there is none.
std::wstring FindStudy(const std::wstring& folder)
{
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path object = entry->path() / L"O1";
        if (KindOfFile(utilsExam::GetStudyPath(object.c_str()).GetString()) == FileKind::file)
            return entry->path().wstring();
    }
    return {};
}

} // namespace

CString ServiceDesk::Pack(CWnd& window, const ExamState& state,
                          const std::vector<std::wstring>& images, const Talk& talk)
{
    // A missing folder shows when the archive is created.
    utilsExam::CreateDirectoryW(m_folder.c_str());
    const std::wstring archive = FindNumbered(m_folder, archiveName).next;
    const StudyFiles study(state, images, archive);
    const ArchiveResult result =
        WorkWithProgress(window, GetStr("exam.archive.packing"), [&](const auto& progress) {
            return PackFiles(archive, study.Files(), progress);
        });
    if (!study.Missing().empty()) talk.tell(SkippedText("exam.archive.left", study.Missing()));
    return ResultText(result, "exam.archive.packed", archive);
}

bool ServiceDesk::CloseAbout()
{
    if (!m_about.IsShown()) return false;
    m_about.ShowWindow(SW_HIDE);
    return true;
}

CString ServiceDesk::Unpack(CWnd& window, const Talk& talk)
{
    const std::wstring archive = FindNumbered(m_folder, archiveName).last;
    if (archive.empty()) return GetStr("exam.archive.none", m_folder.c_str());
    const std::wstring folder = fs::path(archive).replace_extension().wstring();
    const std::size_t there = FilesInTheWay(archive, folder).size();
    if (there > 0 &&
        !talk.ask(GetStr("exam.archive.replace", static_cast<int>(there), folder.c_str())))
        return GetStr("exam.archive.kept", folder.c_str());
    const ArchiveResult result =
        WorkWithProgress(window, GetStr("exam.archive.unpacking"), [&](const auto& progress) {
            return UnpackArchive(archive, folder, {}, Existing::replace, progress);
        });
    if (!result.skipped.empty()) talk.tell(SkippedText("exam.archive.skipped", result.skipped));
    const std::wstring study = FindStudy(folder);
    if (!study.empty() && result.problem.empty() && !result.isCancelled) talk.offer(study);
    return ResultText(result, "exam.archive.unpacked", folder);
}

} // namespace exam
