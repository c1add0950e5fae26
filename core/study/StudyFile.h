#pragma once

#include "study/KeptDocument.h"
#include "study/StudyContent.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace exam {

/// The files of one study, in the folders that utilsExam names: the patient's, the study's, and one
/// for each object (docs/formats/study.md).
///
/// Nothing is lost: what this application does not understand survives a save. A file that cannot
/// be read, is another kind of document or was written by a newer application is never written.
class StudyFile
{
public:
    /// Reads the study in `folder`, such as "D:\db\P1\S1", into `content`. A study whose files are
    /// missing is empty.
    ///
    /// The result is empty, or one sentence for the user. IsOpen() then tells whether the study
    /// could be opened all the same: without the objects whose own files cannot be used, or without
    /// the marks that are not understood.
    std::wstring Open(const std::wstring& folder, StudyContent& content);

    bool IsOpen() const { return m_isOpen; }

    /// Writes what has changed, the study last, each file beside the old one and then renamed. The
    /// result is empty, or one sentence that names the file that could not be written; that file
    /// and those after it are as they were. Without an open study nothing is written.
    std::wstring Save(const StudyContent& content);

    /// True when `content` is what the files hold.
    bool IsSaved(const StudyContent& content) const { return m_isOpen && content == m_saved; }

private:
    using MarkKey = std::pair<int, std::wstring>; // number and kind

    std::wstring OpenObject(const zelXMLNode& entry, StudyContent& content);
    void ReadMark(const zelXMLNode& element, StudyContent& content);
    std::wstring ReadElements(StudyContent& content);
    std::wstring ObjectPath(const std::wstring& id) const;
    std::wstring SaveObjects(const StudyContent& content);
    std::wstring SavePatient(const Patient& patient);
    void WriteStudy(const StudyContent& content, const zelXMLNode& root) const;

    std::wstring m_folder;
    bool m_isOpen = false;
    StudyContent m_saved;
    KeptDocument m_patient;
    KeptDocument m_study;
    bool m_hasPatient = false;                      // the patient's file exists
    std::map<std::wstring, KeptDocument> m_objects; // by their ids
    std::set<std::wstring> m_unusable;              // the ids of those that must not be written
    std::map<std::wstring, zelXMLNode> m_entries; // of the objects in the study, as they were read
    std::map<MarkKey, zelXMLNode> m_marks;        // as they were read
    std::vector<zelXMLNode> m_strange;            // elements that are not understood
};

} // namespace exam
