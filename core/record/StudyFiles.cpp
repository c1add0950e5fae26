#include "record/StudyFiles.h"

#include "base/FileReader.h"
#include "base/UnusedPath.h"
#include "image/CineMarks.h"
#include "study/KeptDocument.h"
#include "study/StudyElements.h"

#include <base/FilePath.h>
#include <Utils_Statics/utilsExam.h>

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace exam {

namespace {

namespace fs = std::filesystem;

bool IsFile(const std::wstring& path)
{
    return KindOfFile(path) == FileKind::file;
}

// The platform does not tell capitals in names.
std::wstring Small(std::wstring text)
{
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

} // namespace

StudyFiles::StudyFiles(const ExamState& state, const std::vector<std::wstring>& images,
                       const std::wstring& archive)
    : m_own(fs::path(state.StudyFolder()).filename().wstring() + L"\\"),
      m_beside(UnusedPath(archive + L".", L".objects"))
{
    const fs::path folder = state.StudyFolder();
    for (const PackedFile& file :
         FilesBelow(folder.wstring(), archive).value_or(std::vector<PackedFile>()))
        Add(file.path, m_own + file.name);
    const std::wstring patient = (folder.parent_path() / L"patient.xml").wstring();
    if (IsFile(patient)) Add(patient, L"patient.xml");
    for (const auto& object : state.Content().objects) {
        const std::wstring path = state.ImagePath(object->image);
        if (object->image.empty()) continue;
        if (!IsFile(path)) {
            m_missing.push_back({object->image, SkipReason::missing});
            continue;
        }
        const std::wstring image = TakeUp(path).substr(m_own.size());
        if (image != object->image) WriteObject(*object, image);
    }
    for (const std::wstring& image : images)
        if (fs::path(image).is_absolute() && IsFile(image)) TakeUp(image);
}

StudyFiles::~StudyFiles()
{
    utilsExam::RemoveDirectoryW(m_beside.c_str(), TRUE);
}

void StudyFiles::Add(const std::wstring& path, const std::wstring& name)
{
    m_files.push_back({path, name});
    m_names.insert(Small(name));
}

// Adds an image with its marks, unless it is there already. The result is its name.
std::wstring StudyFiles::TakeUp(const std::wstring& image)
{
    const std::wstring path = base::FullPath(image.c_str());
    const auto there = std::ranges::find(m_files, Small(path),
                                         [](const PackedFile& file) { return Small(file.path); });
    if (there != m_files.end()) return there->name;
    const fs::path own = fs::path(path).filename();
    std::wstring name = m_own + own.wstring();
    for (int number = 2; m_names.contains(Small(name)); ++number)
        name = m_own + own.stem().wstring() + L"-" + std::to_wstring(number) +
               own.extension().wstring();
    Add(path, name);
    if (IsFile(MarksPath(path))) Add(MarksPath(path), MarksPath(name));
    return name;
}

// Puts an object's file that names its image as the archive does into the place of its own one.
void StudyFiles::WriteObject(const StudyObject& object, const std::wstring& image)
{
    const std::wstring name = m_own + object.id + L".xml";
    const auto own = std::ranges::find(m_files, name, &PackedFile::name);
    const std::wstring path = m_beside + L"\\" + object.id + L".xml";
    utilsExam::CreateDirectoryW(m_beside.c_str());
    if (own == m_files.end() || !CopyFileW(own->path.c_str(), path.c_str(), FALSE)) return;
    KeptDocument document;
    StudyObject renamed = object;
    renamed.image = image;
    if (document.Open(path, L"object").empty() &&
        document.Save([&](const zelXMLNode& root) { exam::WriteObject(renamed, root); }).empty())
        own->path = path;
}

} // namespace exam
