#pragma once

#include "service/ServiceWindows.h"
#include "state/ExamState.h"

#include <afxwin.h>

#include <functional>
#include <string>
#include <vector>

namespace exam {

/// The main window's services besides the examination: packing and unpacking of the study, and the
/// about box.
class ServiceDesk
{
public:
    /// Sets the folder of the archives.
    void SetFolder(const std::wstring& folder) { m_folder = folder; }

    /// The user is asked by these before files are replaced, told what was left out, and offered
    /// the study in a folder that was unpacked.
    struct Talk
    {
        std::function<bool(const CString& question)> ask;
        std::function<void(const CString& text)> tell;
        std::function<void(const std::wstring& folder)> offer;
    };

    /// Pack the study with its images (Examination::StudyImages), and unpack the last archive.
    /// `window` is the main window. The result is the sentence for its status line.
    CString Pack(CWnd& window, const ExamState& state, const std::vector<std::wstring>& images,
                 const Talk& talk);
    CString Unpack(CWnd& window, const Talk& talk);

    /// Shows the about box, or hides it.
    void ToggleAbout(CWnd& window) { m_about.Toggle(window); }
    /// Hides the about box; false when it was not open.
    bool CloseAbout();
    const AboutBox& About() const { return m_about; }

private:
    std::wstring m_folder;
    AboutBox m_about;
};

} // namespace exam
