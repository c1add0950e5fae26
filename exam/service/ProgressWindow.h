#pragma once

#include <afxwin.h>

#include <cstddef>
#include <string>

namespace exam {

/// A small window above another one, with a bar that fills while files are packed or unpacked. Each
/// step paints it at once, because the work is done on the user-interface thread.
class ProgressWindow : public CWnd
{
public:
    /// Shows the window; false when the platform refuses.
    bool Open(CWnd& owner, const CString& title);

    /// Shows that `done` of `all` files are finished, and the name of the next.
    void Step(std::size_t done, std::size_t all, const std::wstring& name);

private:
    HWND m_name = nullptr; // child windows, destroyed with the window
    HWND m_bar = nullptr;
};

} // namespace exam
