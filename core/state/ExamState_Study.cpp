// The study: its recordings and marks, undo and redo, and the frames that it keeps.
#include "state/ExamState.h"

#include "base/FileReader.h"
#include "base/NumberedFiles.h"
#include "image/CineProblem.h"
#include "image/CineWriting.h"

#include <base/FileContents.h>
#include <base/Folders.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

namespace exam {

namespace {

constexpr std::size_t largestFrame = 300'000'000; // bytes; more than a recording of one has

} // namespace

std::wstring ExamState::OpenStudy(StudyContent content, const std::wstring& folder)
{
    MouseCapture::Unlock();
    m_study.Open(std::move(content));
    m_studyFolder = folder;
    m_kept.clear();
    m_lastKept = 0;
    for (Entry& entry : m_sources) // a name means the file that this study finds by it
        if (!entry.name.empty() && entry.path != ImagePath(entry.name)) entry.name = entry.path;
    std::wstring problem;
    for (const auto& object : Content().objects) {
        std::wstring own = AddImageOf(*object);
        if (problem.empty()) problem = std::move(own);
    }
    ShowStudy();
    return problem;
}

std::wstring ExamState::ImagePath(const std::wstring& image) const
{
    std::wstring inStudy = (std::filesystem::path(m_studyFolder) / image).wstring();
    if (KindOfFile(inStudy) != FileKind::missing) return inStudy;
    return std::wstring(utilsExam::GetImage(image.c_str()));
}

std::wstring ExamState::AddImageOf(const StudyObject& object)
{
    if (object.image.empty() || SourceNamed(object.image)) return {};
    const std::wstring path = ImagePath(object.image);
    if (std::wstring problem = AddFile(path, object.image); !problem.empty()) return problem;
    const std::wstring missing = m_sources.back().source->Problem();
    return missing.empty() ? missing : path + L": " + InUsersLanguage(missing);
}

const FrameSource* ExamState::SourceNamed(const std::wstring& image) const
{
    const auto found = std::ranges::find(m_sources, image, &Entry::name);
    return found == m_sources.end() || image.empty() ? nullptr : found->source.get();
}

// The name by which objects of the study have a file for their image; its path when none has.
std::wstring ExamState::NameInStudy(const std::wstring& path) const
{
    for (const auto& object : Content().objects)
        if (ImagePath(object->image) == path) return object->image;
    return path;
}

// Shows the marks that the study has for the frame on display.
void ExamState::ShowStudy()
{
    m_marks.Follow(FindFrame());
    m_marks.Refresh();
}

bool ExamState::Undo()
{
    MouseCapture::Unlock();
    const bool done = m_study.Undo();
    FollowKeptFrames();
    ShowStudy();
    return done;
}

bool ExamState::Redo()
{
    MouseCapture::Unlock();
    const bool done = m_study.Redo();
    FollowKeptFrames();
    ShowStudy();
    return done;
}

bool ExamState::RemoveSelected()
{
    m_study.EndGesture();
    const bool done = m_study.RemoveMark(m_marks.Selected());
    ShowStudy();
    return done;
}

void ExamState::RemoveShown()
{
    m_marks.Cancel();
    m_study.BeginGesture();
    for (const int number : m_marks.Shown())
        m_study.RemoveMark(number);
    m_study.EndGesture();
    ShowStudy();
}

// The frame on display as the study names it; without an id when the study does not know it.
StudyFrame ExamState::FindFrame() const
{
    if (!HasSource()) return {};
    std::wstring name = m_sources[m_current].name;
    if (const auto kept = m_kept.find({m_current, m_frame}); kept != m_kept.end())
        name = kept->second.name;
    const int frame = Source().IsLive() ? 0 : m_frame; // a live frame is kept as one of its own
    for (const auto& object : Content().objects)
        if (!name.empty() && object->image == name) return {object->id, frame};
    return {};
}

StudyFrame ExamState::TakeUpFrame()
{
    if (!HasSource()) return {};
    if (StudyFrame found = FindFrame(); !found.object.empty()) return found;
    const std::pair key(m_current, m_frame);
    if (Source().IsLive() && !m_kept.contains(key) && !KeepLiveFrame()) {
        SetStatus(GetStr("exam.measure.unkept", m_studyFolder.c_str()));
        return {};
    }
    StudyObject object;
    object.image = Source().IsLive() ? m_kept[key].name : m_sources[m_current].name;
    const CineDescription& cine = Source().Description();
    if (!Source().IsPicture()) object.acquisition = {cine.stream, cine.steerAngle, cine.apexAngle};
    m_study.AddObject(std::move(object));
    FollowKeptFrames();
    return FindFrame();
}

// Writes the frame on display, which a probe will have no more, into the study's folder, and adds
// it to the recordings.
bool ExamState::KeepLiveFrame()
{
    const NumberedFiles files = FindNumbered(m_studyFolder, L"simulated-%03d.cine", m_lastKept + 1);
    base::MakeFolders(m_studyFolder);
    if (!WriteFrame(Source(), m_frame, files.next)) {
        DeleteFileW(files.next.c_str()); // no part of a frame stays
        return false;
    }
    m_lastKept = files.number;
    const std::wstring name = std::filesystem::path(files.next).filename().wstring();
    m_kept[{m_current, m_frame}] = {name};
    return AddFile(files.next, name).empty();
}

// Takes the files away that the study keeps no more, and brings those back that it keeps again.
void ExamState::FollowKeptFrames()
{
    for (auto& [key, kept] : m_kept) {
        const bool isKept =
            std::ranges::any_of(Content().objects, [&name = kept.name](const auto& object) {
                return object->image == name;
            });
        if (isKept == (SourceNamed(kept.name) != nullptr)) continue;
        if (!(isKept ? BringBack(kept) : TakeAway(kept, key.first)))
            SetStatus(GetStr("exam.measure.unkept", m_studyFolder.c_str()));
    }
}

// Closes a file, and shows another image in its place.
void ExamState::Close(std::size_t index, std::size_t next)
{
    if (index == m_current) {
        SelectImage(next);
        SetFrozen(true);
    }
    m_sources.erase(m_sources.begin() + static_cast<std::ptrdiff_t>(index));
    if (m_current > index) --m_current;
    if (m_fitted && *m_fitted > index) --*m_fitted;
}

void ExamState::CloseImage(const std::wstring& name)
{
    const auto entry = std::ranges::find(m_sources, name, &Entry::name);
    if (entry == m_sources.begin() || entry == m_sources.end()) return;
    Close(static_cast<std::size_t>(entry - m_sources.begin()), 0);
    std::erase_if(m_kept, [&](const auto& each) { return each.second.name == name; });
}

void ExamState::RemoveImage(const std::wstring& name)
{
    m_study.EndGesture();
    for (const auto& object : Content().objects) {
        if (object->image != name) continue;
        const std::wstring id = object->id;
        m_study.RemoveObject(id);
        break;
    }
    ShowStudy();
}

// The probe is shown again in the place of the file.
bool ExamState::TakeAway(KeptFrame& kept, std::size_t probe)
{
    const std::wstring path = m_studyFolder + L"\\" + kept.name;
    auto bytes = base::ReadFileWhole(path.c_str(), largestFrame);
    if (!bytes) return false;
    const auto entry = std::ranges::find(m_sources, kept.name, &Entry::name);
    Close(static_cast<std::size_t>(entry - m_sources.begin()), probe);
    kept.bytes = std::move(*bytes);
    return DeleteFileW(path.c_str()) != FALSE;
}

bool ExamState::BringBack(KeptFrame& kept)
{
    const std::filesystem::path path = m_studyFolder + L"\\" + kept.name;
    {
        std::ofstream file(path, std::ios::binary);
        file.write(kept.bytes.data(), static_cast<std::streamsize>(kept.bytes.size()));
        if (!file.flush()) return false;
    }
    kept.bytes.clear();
    return AddFile(path.wstring(), kept.name).empty();
}

} // namespace exam
