#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

#include <commctrl.h>

class CTimerWnd;
class CWnd;

/// Shows one balloon tip at a time, at a place on the screen and for a limited time.
///
/// All calls come from one thread, which dispatches messages: the tip's time is a timer's. What
/// cannot be created is not shown. Copies share the tip: each can replace and cancel it, and it
/// goes with the last of them.
class UTILS_STATICS_API CToolTipProvider
{
public:
    /// Values of the tooltip control (TTI_...).
    enum IconType : int
    {
        iconNone = 0,
        iconInformation = 1,
        iconWarning = 2,
        iconError = 3,
    };

    CToolTipProvider();
    CToolTipProvider(const CToolTipProvider& other);
    CToolTipProvider& operator=(const CToolTipProvider& other);
    virtual ~CToolTipProvider();

    /// Shows `text` below `title` with its tip at `at`, in screen pixels, for `timeMs`
    /// milliseconds; what was shown before is replaced. An empty or null text hides the tip. Lines
    /// wrap at 1024 pixels. The control refuses titles of more than 99 characters and keeps the one
    /// before.
    void SetToolTip(const wchar_t* text, const wchar_t* title, POINT at, IconType icon,
                    unsigned int timeMs);
    /// The same at the bottom right corner of a window; nothing happens when `anchor` is null.
    void SetToolTip(const wchar_t* text, const wchar_t* title, CWnd* anchor, IconType icon,
                    unsigned int timeMs);
    /// Hides the tip and stops its time.
    void CancelToolTip();

private:
    bool CreateToolTip();
    void DestroyToolTip();
    bool BothExist() const;
    void Share(const CToolTipProvider& other);
    LRESULT Send(UINT message, WPARAM wParam);

    HWND m_window = nullptr;
    TOOLINFOW m_tool = {};
    CTimerWnd* m_timer = nullptr; // owned together with the copies
};
