#pragma once

#include "record/StudyArchive.h"
#include "state/ExamState.h"
#include "study/StudyFile.h"

#include <atlstr.h>

#include <string>

namespace exam {

/// Keeps the study in its files, and hands it out as a table and a report.
class StudyDesk
{
public:
    /// The results are empty, or one sentence for the user.
    std::wstring Open(const std::wstring& folder, StudyContent& content);
    std::wstring Save(const StudyContent& content);

    bool IsSaved(const StudyContent& content) const { return m_file.IsSaved(content); }

    /// Write measurements-1.csv or report-1.html and so on into a folder. The result is the
    /// sentence for the status line. `progress` is called before each picture of the report.
    CString WriteTable(const StudyContent& content, const std::wstring& folder) const;
    CString WriteReport(const ExamState& state, const std::wstring& folder,
                        const ArchiveProgress& progress) const;

private:
    StudyFile m_file;
};

} // namespace exam
