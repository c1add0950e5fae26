#pragma once

#include "base/Painting.h"

#include <afxwin.h>

#include <cstddef>
#include <memory>
#include <string>

// The small windows over the main window. They never take the keyboard, which stays with the window
// below them. Their controls are child windows, destroyed with them.
namespace exam {

/// The box that names this program and lists its modules with their versions.
class AboutBox : public CWnd
{
public:
    /// Shows the box in the middle of a window, with the modules that are loaded now, or hides it.
    void Toggle(CWnd& owner);
    bool IsShown() const { return GetSafeHwnd() && IsWindowVisible(); }

protected:
    void OnClose();
    LRESULT OnControlColour(WPARAM dc, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    bool Open(CWnd& owner);
    void AddPicture(CRect& area);
    void List();

    CBitmap m_picture;
    std::unique_ptr<TextFont> m_font;
    HWND m_list = nullptr;
};

/// A window with a bar that fills while something is done file by file.
class ProgressWindow : public CWnd
{
public:
    /// Shows the window, with a button to cancel if the work can be; false when the platform
    /// refuses.
    bool Open(CWnd& owner, const CString& title, bool canCancel = false);

    /// Shows that `done` of `all` files are finished, and the name of the next.
    void Step(std::size_t done, std::size_t all, const std::wstring& name);

    bool IsCancelled() const { return m_isCancelled; }

protected:
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void OnClose() { m_isCancelled = true; }
    BOOL OnEraseBkgnd(CDC* dc);
    LRESULT OnControlColour(WPARAM dc, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    bool AddButton(const CRect& line);

    std::unique_ptr<TextFont> m_font;
    HWND m_name = nullptr;
    HWND m_bar = nullptr;
    HWND m_button = nullptr;
    bool m_isCancelled = false;
};

} // namespace exam
