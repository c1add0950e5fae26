#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>
#include <commctrl.h>

class CTimerWnd;
class CWnd;

/// Shows one balloon tip at a time, at a place on the screen and for a limited time.
///
/// All calls come from one thread, which dispatches messages, because a timer ends the tip. A tip
/// whose window cannot be created is not shown. Copies share the tip: each can replace and cancel
/// it, and the last of them destroys it.
class UTILS_STATICS_API CToolTipProvider
{
public:
    /// The icons, with the values of the tooltip control (TTI_...).
    enum IconType : int
    {
        iconNone = 0,
        iconInformation = 1,
        iconWarning = 2,
        iconError = 3,
    };

    CToolTipProvider();
    /// Share the tip of the other; an assigned object first gives up its own share.
    CToolTipProvider(const CToolTipProvider& other);
    CToolTipProvider& operator=(const CToolTipProvider& other);
    virtual ~CToolTipProvider();

    /// Shows `text` below `title` for `timeMs` milliseconds in place of the tip shown before. The
    /// balloon points at `at`, in screen pixels. An empty or null text hides the tip. Lines wrap at
    /// 1024 pixels. The control refuses titles of more than 99 characters and keeps the previous
    /// one.
    void SetToolTip(const wchar_t* text, const wchar_t* title, POINT at, IconType icon,
                    unsigned int timeMs);
    /// Shows a tip at the bottom right corner of `anchor`; does nothing when that is null.
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
    CTimerWnd* m_timer = nullptr; // shared with the copies, which own it together
};
