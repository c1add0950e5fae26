#pragma once

#include <Utils_Statics/CToolTipProvider.h>

#include <afxwin.h>

namespace exam {

/// A tip about the thing below the pointer. A window calls Follow for each move of the mouse on
/// something that has a tip, Leave for each move elsewhere and for WM_MOUSELEAVE, and Press for
/// each press of a mouse button.
class HoverTip
{
public:
    HoverTip() = default;
    ~HoverTip();
    HoverTip(const HoverTip&) = delete;
    HoverTip& operator=(const HoverTip&) = delete;

    static constexpr unsigned delay = 500; ///< milliseconds from the pointer's arrival to the tip

    /// `area`, in client coordinates of `window`, identifies the thing. Its tip is shown once,
    /// after the delay and beside the window, so that it covers no button there. It goes when the
    /// pointer is on something else or some seconds have passed.
    void Follow(const CWnd& window, const CRect& area, const CString& title, const CString& text);
    void Leave();

    /// Hides the tip, or lets it not come, until the pointer is on something else.
    void Press();

private:
    static void CALLBACK OnTimer(HWND window, UINT message, UINT_PTR timer, DWORD time);
    void Show();

    CToolTipProvider m_provider;
    CRect m_area{};
    CRect m_window{}; // on the screen
    CPoint m_middle;  // of the thing, on the screen
    CString m_title;
    CString m_text;
    UINT_PTR m_timer = 0;
};

} // namespace exam
