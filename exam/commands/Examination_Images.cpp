// The images of an examination: they are opened, listed and removed.
#include "commands/Examination.h"

#include "base/FileReader.h"
#include "image/CineMarks.h"
#include "image/CineProblem.h"
#include "image/OpenFrames.h"
#include "service/RecentFiles.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <shellapi.h>

#include <algorithm>
#include <filesystem>

namespace exam {

namespace {

namespace fs = std::filesystem;

} // namespace

void Examination::OpenImage(const std::wstring& path)
{
    if (const std::wstring problem = m_state.OpenImage(path); !problem.empty())
        return Report(NoticeKind::error, problem.c_str());
    AddRecentFile(path);
    const std::wstring missing = m_state.Source().Problem();
    if (missing.empty()) return m_state.SetStatus(GetStr("exam.image.opened", path.c_str()));
    Report(NoticeKind::warning,
           GetStr("exam.image.partly", path.c_str(), InUsersLanguage(missing).c_str()));
}

void Examination::ChooseImage()
{
    if (const std::wstring path = m_window.ChooseImage(); !path.empty()) OpenImage(path);
}

std::vector<std::wstring> Examination::StudyImages() const
{
    std::vector<std::wstring> images;
    for (const auto& object : m_state.Content().objects)
        if (std::ranges::find(images, object->image) == images.end())
            images.push_back(object->image);
    const std::size_t named = images.size();
    for (const std::wstring& folder : {m_state.StudyFolder(), m_folder}) {
        std::error_code error; // a folder that is not there has no files
        for (fs::directory_iterator entry(folder, error);
             !error && entry != fs::directory_iterator(); entry.increment(error)) {
            const std::wstring path = entry->path().wstring();
            const bool isNamed =
                std::ranges::find(images, entry->path().filename().wstring()) != images.end();
            if (IsShowable(path) && !isNamed) images.push_back(path);
        }
    }
    std::ranges::sort(images.begin() + static_cast<std::ptrdiff_t>(named), images.end());
    return images;
}

void Examination::ShowStudyImage(const std::wstring& name)
{
    if (!m_state.SourceNamed(name)) return OpenImage(name);
    m_state.OpenImage(name);
    m_state.SetStatus(GetStr("exam.image.opened", name.c_str()));
}

bool Examination::IsOwnFile(const std::wstring& path) const
{
    const std::wstring folder = fs::path(path).parent_path().wstring();
    return KindOfFile(path) == FileKind::file &&
           (_wcsicmp(folder.c_str(), m_state.StudyFolder().c_str()) == 0 ||
            _wcsicmp(folder.c_str(), m_folder.c_str()) == 0);
}

bool Examination::RemoveStudyImage(const std::wstring& name)
{
    const std::wstring path = m_state.ImagePath(name);
    const bool isOwn = IsOwnFile(path);
    int marks = 0;
    for (const auto& mark : m_state.Content().marks)
        if (const StudyObject* const object = FindObject(m_state.Content(), mark->object))
            marks += object->image == name;
    const std::wstring file = fs::path(path).filename().wstring();
    const char* const question = isOwn ? "exam.remove.file" : "exam.remove.marks";
    if (name.empty() || (!isOwn && marks == 0)) {
        m_state.SetStatus(GetStr("exam.remove.nothing"));
        return false;
    }
    if (!m_window.Ask(GetStr(question, file.c_str(), marks))) return false;
    if (isOwn && !MoveToBin(name, path)) return false;
    m_state.RemoveImage(name);
    m_state.SetStatus(GetStr("exam.remove.done", file.c_str()));
    return true;
}

// An image that cannot be moved stays open.
bool Examination::MoveToBin(const std::wstring& name, const std::wstring& path)
{
    const auto remove = [](const std::wstring& file) {
        return utilsExam::SHFileOperationW(FO_DELETE, file.c_str(), nullptr, TRUE, FOF_ALLOWUNDO,
                                           nullptr, nullptr, nullptr) != 0;
    };
    const bool wasOpen = m_state.SourceNamed(name) != nullptr;
    m_state.CloseImage(name);
    if (remove(path)) {
        if (m_finished == path) m_finished.clear();
        if (KindOfFile(MarksPath(path)) == FileKind::file) remove(MarksPath(path));
        return true;
    }
    if (wasOpen) m_state.OpenImage(path);
    Report(NoticeKind::error, GetStr("exam.remove.failed", path.c_str()));
    return false;
}

} // namespace exam
