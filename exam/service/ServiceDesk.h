#pragma once

#include "service/AboutBox.h"

#include <afxwin.h>

#include <optional>
#include <string>

namespace exam {

/// The main window's services besides the examination: packing and unpacking of the study, the
/// about box, and in service mode the service menu.
class ServiceDesk
{
public:
    /// Sets the folder of the archives.
    void SetFolder(const std::wstring& folder) { m_folder = folder; }

    /// Handles a key; `window` is the main window. The result is the text for its status line, or
    /// nothing when there is none.
    std::optional<CString> OnKey(CWnd& window, UINT key);

    const AboutBox& About() const { return m_about; }

    /// The path of the archive that was packed last; empty when there is none in the folder.
    std::wstring LastArchive() const;

private:
    CString Pack(CWnd& window);
    CString Unpack(CWnd& window);
    std::wstring Archive(int number) const;
    int LastNumber() const;

    std::wstring m_folder;
    AboutBox m_about;
};

} // namespace exam
