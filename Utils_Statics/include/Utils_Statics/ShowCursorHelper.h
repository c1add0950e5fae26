#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

#include <cstdint>

class CriticalSection;

/// Create one while the ordinary system cursor is needed, for a dialog or pop-up over the imaging
/// screen.
///
/// The first live guard of the process tells the application's main window to show the cursor, the
/// last one that goes tells it to hide it; every guard releases the mouse capture of its thread,
/// and restores in its destructor the cursor's confinement and the enabled state of the main window
/// that it found. End guards in the reverse order of their creation.
///
/// Guards may be created on any thread. The messages are sent, and answered, while the other
/// threads' guards wait: while guards are created elsewhere, the thread of the main window must go
/// on dispatching, and must not create guards itself. Without an application or main window only
/// the cursor is looked after.
class ShowCursorHelper
{
public:
    /// notify: the first and last guard also send WM_APP + 22.
    UTILS_STATICS_API explicit ShowCursorHelper(bool notify);
    UTILS_STATICS_API ~ShowCursorHelper();

    /// A copy would be a guard that was never counted.
    ShowCursorHelper(const ShowCursorHelper&) = delete;

    /// Takes over what the other guard found; the number of live guards stays.
    ShowCursorHelper& operator=(const ShowCursorHelper&) = default;

private:
    RECT m_clipRect = {};
    BOOL m_enabled = TRUE;
    bool m_notify;

    static std::uint32_t m_count; // live guards
    static CriticalSection
        m_criticalSection; // of m_count and the messages; defined among the static objects
};
