#pragma once

#include "service/ServiceWindows.h"

#include <afxwin.h>

#include <string>

namespace exam {

/// The main window's services besides the examination: packing and unpacking of the study, and the
/// about box.
class ServiceDesk
{
public:
    /// Sets the folder of the archives.
    void SetFolder(const std::wstring& folder) { m_folder = folder; }

    /// Pack the study and unpack the last archive. `window` is the main window. The result is the
    /// sentence for its status line.
    CString Pack(CWnd& window);
    CString Unpack(CWnd& window);

    /// Shows the about box, or hides it.
    void ToggleAbout(CWnd& window) { m_about.Toggle(window); }
    const AboutBox& About() const { return m_about; }

private:
    std::wstring m_folder;
    AboutBox m_about;
};

} // namespace exam
