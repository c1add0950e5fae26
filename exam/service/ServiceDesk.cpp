#include "service/ServiceDesk.h"

#include "base/NumberedFiles.h"
#include "service/StudyArchive.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <filesystem>
#include <functional>

namespace exam {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t archiveName[] = L"study-%03d.zip";

// The folder of the study that the images belong to.
std::wstring StudyFolder()
{
    const CString object = utilsExam::GetPatientRootPath() + L"P1\\S1\\O1";
    return fs::path(utilsExam::GetStudyPath(object).GetString()).parent_path().wstring();
}

CString ResultText(const ArchiveResult& result, const char* doneKey, const std::wstring& place)
{
    if (!result.problem.empty()) return GetStr("exam.archive.failed", result.problem.c_str());
    return GetStr(doneKey, static_cast<int>(result.files), place.c_str());
}

// The callback that fills the bar. The bar outlives it.
ArchiveProgress StepsOf(ProgressWindow& bar)
{
    return std::bind_front(&ProgressWindow::Step, &bar);
}

} // namespace

CString ServiceDesk::Pack(CWnd& window)
{
    utilsExam::CreateDirectoryW(
        m_folder.c_str()); // a missing one shows when the archive is created
    ProgressWindow bar;
    bar.Open(window, GetStr("exam.archive.packing"));
    const std::wstring archive = FindNumbered(m_folder, archiveName).next;
    return ResultText(PackFolder(archive, StudyFolder(), StepsOf(bar)), "exam.archive.packed",
                      archive);
}

bool ServiceDesk::CloseAbout()
{
    if (!m_about.IsShown()) return false;
    m_about.ShowWindow(SW_HIDE);
    return true;
}

CString ServiceDesk::Unpack(CWnd& window, const std::function<bool(const CString& question)>& ask)
{
    const std::wstring archive = FindNumbered(m_folder, archiveName).last;
    if (archive.empty()) return GetStr("exam.archive.none", m_folder.c_str());
    const std::wstring folder = fs::path(archive).replace_extension().wstring();
    const std::size_t there = FilesInTheWay(archive, folder).size();
    if (there > 0 && !ask(GetStr("exam.archive.replace", static_cast<int>(there), folder.c_str())))
        return GetStr("exam.archive.kept", folder.c_str());
    ProgressWindow bar;
    bar.Open(window, GetStr("exam.archive.unpacking"));
    return ResultText(UnpackArchive(archive, folder, {}, Existing::replace, StepsOf(bar)),
                      "exam.archive.unpacked", folder);
}

} // namespace exam
