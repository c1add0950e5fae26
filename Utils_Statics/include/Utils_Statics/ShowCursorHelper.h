#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

#include <cstdint>

class CriticalSection;

/// A guard for the time in which the ordinary system cursor is needed, for example during a dialog
/// or a pop-up over the imaging screen.
///
/// The first live guard of the process tells the application's main window to show the cursor; the
/// last one tells it to hide it. Every guard releases the mouse capture of its thread. Its
/// destructor restores the cursor's confinement and the main window's enabled state as the
/// constructor found them. Guards end in the reverse order of their creation.
///
/// Guards may be created on any thread. While one sends its messages, the guards of other threads
/// wait. So while guards are created on other threads, the main window's thread has to go on
/// dispatching and must not create guards itself. Without an application or main window, guards
/// only deal with the cursor.
class ShowCursorHelper
{
public:
    /// With notify, the first and last guard also send WM_APP + 22.
    UTILS_STATICS_API explicit ShowCursorHelper(bool notify);
    UTILS_STATICS_API ~ShowCursorHelper();

    /// Deleted, because a copy would be a guard that was never counted.
    ShowCursorHelper(const ShowCursorHelper&) = delete;

    /// Takes over the state that the other guard found; the number of live guards stays.
    ShowCursorHelper& operator=(const ShowCursorHelper&) = default;

private:
    RECT m_clipRect = {};
    BOOL m_enabled = TRUE;
    bool m_notify;

    static std::uint32_t m_count; // live guards
    // Guards m_count and the messages. Defined among the static objects.
    static CriticalSection m_criticalSection;
};
