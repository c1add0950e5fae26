#include "service/StudyDesk.h"

#include "base/NumberedFiles.h"
#include "base/UnusedPath.h"
#include "measure/MarkPicture.h"
#include "study/MeasurementTable.h"
#include "study/ReportPage.h"
#include "study/StudyTexts.h"

#include <base/FileContents.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <utility>
#include <vector>

namespace exam {

namespace {

constexpr CSize pictureSize{640, 560};
constexpr std::size_t mostPictures = 20;
constexpr std::size_t largestPicture = 50'000'000; // bytes

// Writes a new file whole, or not at all.
bool WriteNew(const std::wstring& path, const std::string& bytes)
{
    std::ofstream file{std::filesystem::path(path), std::ios::binary};
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (file) return true;
    std::error_code error; // nothing was there before
    std::filesystem::remove(path, error);
    return false;
}

CString WriteNumbered(const std::wstring& folder, const wchar_t* name, const std::string& bytes)
{
    utilsExam::CreateDirectoryW(folder.c_str());
    const std::wstring path = FindNumbered(folder, name).next;
    return GetStr(WriteNew(path, bytes) ? "exam.export.saved" : "exam.export.unsaved",
                  path.c_str());
}

// The frames that marks lie on, each once, in the order of the marks' numbers.
std::vector<std::pair<std::wstring, int>> MarkedFrames(const StudyContent& study)
{
    std::vector<std::pair<std::wstring, int>> frames;
    std::set<std::pair<std::wstring, int>> seen;
    for (const auto& mark : study.marks) {
        const std::pair frame(mark->object, mark->frame);
        if (InfoOf(mark->kind).place == MarkPlace::frame && seen.insert(frame).second &&
            frames.size() < mostPictures)
            frames.push_back(frame);
    }
    return frames;
}

std::vector<ReportPicture> Pictures(const ExamState& state, const std::wstring& folder,
                                    const ArchiveProgress& progress)
{
    const StudyContent& study = state.Content();
    std::vector<ReportPicture> pictures;
    const std::wstring path = UnusedPath(folder + L"\\report-", L".png");
    const auto frames = MarkedFrames(study);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const auto& [id, frame] = frames[i];
        progress(i, frames.size(), id);
        const StudyObject* const object = FindObject(study, id);
        const FrameSource* const source = object ? state.SourceNamed(object->image) : nullptr;
        if (!source || !SaveMarkedFrame(*source, frame, study, id, pictureSize, path)) continue;
        source->Rest();
        std::wstring caption = NameOf(*object) + L", " + TextOf("study.column.frame") + L" " +
                               std::to_wstring(frame + 1);
        if (source->IsSimulated()) caption += L", " + TextOf("exam.source.simulated");
        pictures.push_back(
            {base::ReadFileWhole(path.c_str(), largestPicture).value_or(std::string()), caption});
        DeleteFileW(path.c_str());
    }
    return pictures;
}

} // namespace

std::wstring StudyDesk::Open(const std::wstring& folder, StudyContent& content)
{
    return m_file.Open(folder, content);
}

std::wstring StudyDesk::Save(const StudyContent& content)
{
    return m_file.Save(content);
}

CString StudyDesk::WriteTable(const StudyContent& content, const std::wstring& folder) const
{
    return WriteNumbered(folder, L"measurements-%d.csv", MeasurementTable(content));
}

CString StudyDesk::WriteReport(const ExamState& state, const std::wstring& folder,
                               const ArchiveProgress& progress) const
{
    utilsExam::CreateDirectoryW(folder.c_str());
    return WriteNumbered(folder, L"report-%d.html",
                         ReportPage(state.Content(), Pictures(state, folder, progress)));
}

} // namespace exam
