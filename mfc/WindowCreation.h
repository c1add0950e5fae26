#pragma once

#include <base/Handles.h>

#include <afxwin.h>

// The creation of one window: while it lives, the first window that the thread creates becomes the
// object's. The message map is in force from the window's first message on.
class WindowCreation
{
public:
    explicit WindowCreation(CWnd& object);
    ~WindowCreation();
    WindowCreation(const WindowCreation&) = delete;
    WindowCreation& operator=(const WindowCreation&) = delete;

    // Null on failure. PostNcDestroy has then been called, and the object may be gone.
    HWND Create(const CREATESTRUCT& description);

private:
    static LRESULT CALLBACK OnHook(int code, WPARAM wParam, LPARAM lParam) noexcept;
    void Adopt(HWND window);
    void CleanUp();

    CWnd& m_object;
    HWND m_window = nullptr; // the one that became the object's
    WindowCreation* m_outer;
    base::Hook m_hook;
};
