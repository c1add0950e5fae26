#pragma once

#include <afxwin.h>

namespace exam {

/// The box that names this program and lists its modules with their versions. It never takes the
/// keyboard, which stays with the window below it.
class AboutBox : public CWnd
{
public:
    /// Shows the box in the middle of a window, with the modules that are loaded now, or hides it.
    void Toggle(CWnd& owner);
    bool IsShown() const { return GetSafeHwnd() && IsWindowVisible(); }

protected:
    void OnClose();
    DECLARE_MESSAGE_MAP()

private:
    bool Open(CWnd& owner);
    void List();

    HWND m_list = nullptr; // a child window, destroyed with the box
};

} // namespace exam
