#pragma once

#include <Utils_Statics/CToolTipProvider.h>

#include <afxwin.h>

namespace exam {

/// A tip about the thing below the pointer. A window calls Follow for each move of the mouse on
/// something that has a tip, and Leave for each move elsewhere and for WM_MOUSELEAVE.
class HoverTip
{
public:
    /// `area`, in client coordinates of `window`, identifies the thing. Its tip is shown once, at
    /// its lower right corner, until the pointer is on something else or some seconds have passed.
    void Follow(const CWnd& window, const CRect& area, const CString& title, const CString& text);
    void Leave();

private:
    CToolTipProvider m_provider;
    CRect m_area{};
};

} // namespace exam
