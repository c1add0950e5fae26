#pragma once

#include "record/StudyArchive.h"
#include "state/ExamState.h"

#include <set>
#include <string>
#include <vector>

namespace exam {

/// The files that belong to a study, wherever they lie, under names that a study has in any folder:
/// "patient.xml", and the others in a folder named as the study's own. An image from elsewhere gets
/// another name where its own is taken. The study's objects name the images so in the archive, for
/// which they are written anew beside it as long as this object lives.
class StudyFiles
{
public:
    /// `images`: those of the study by their names or paths (Examination::StudyImages). The archive
    /// is left out where it lies among the files.
    StudyFiles(const ExamState& state, const std::vector<std::wstring>& images,
               const std::wstring& archive);
    ~StudyFiles();
    StudyFiles(const StudyFiles&) = delete;
    StudyFiles& operator=(const StudyFiles&) = delete;

    const std::vector<PackedFile>& Files() const { return m_files; }
    /// The images that the study names, but that are not there.
    const std::vector<SkippedEntry>& Missing() const { return m_missing; }

private:
    void Add(const std::wstring& path, const std::wstring& name);
    std::wstring TakeUp(const std::wstring& image);
    void WriteObject(const StudyObject& object, const std::wstring& image);

    std::wstring m_own;    // the study's folder in the archive, with a backslash
    std::wstring m_beside; // the folder of the objects that are written anew
    std::vector<PackedFile> m_files;
    std::set<std::wstring> m_names; // of the files, in small letters
    std::vector<SkippedEntry> m_missing;
};

} // namespace exam
