#include "Utils_Statics/ShowCursorHelper.h"

#include "environment/Application.h"

#include <qor_utils/CriticalSection.h>

constinit std::uint32_t ShowCursorHelper::m_count = 0;

namespace {

// The messages to the application's main window.
constexpr UINT notifyMessage = WM_APP + 22;
constexpr UINT commandMessage = WM_APP + 2;
constexpr WPARAM commandCursorOn = 1031;
constexpr WPARAM commandCursorOff = 1030;
constexpr UINT cursorMessage = WM_APP + 60;

} // namespace

using utils_statics::MainWindow;

ShowCursorHelper::ShowCursorHelper(bool notify) : m_notify(notify)
{
    const CriticalSectionLock lock(m_criticalSection);
    ++m_count;
    const HWND window = MainWindow();
    if (window) m_enabled = IsWindowEnabled(window);
    if (m_count == 1 && window) {
        if (m_notify) SendMessageW(window, notifyMessage, 1, 0);
        SendMessageW(window, commandMessage, commandCursorOn, 0);
        SendMessageW(window, cursorMessage, 1, 0);
    }
    if (GetCapture()) ReleaseCapture();
    GetClipCursor(&m_clipRect);
}

ShowCursorHelper::~ShowCursorHelper()
{
    const CriticalSectionLock lock(m_criticalSection);
    --m_count;
    ::ClipCursor(&m_clipRect);
    const HWND window = MainWindow();
    if (!window) return;
    EnableWindow(window, m_enabled);
    if (m_count != 0) return;
    if (m_notify) SendMessageW(window, notifyMessage, 0, 0);
    SendMessageW(window, commandMessage, commandCursorOff, -1);
    SendMessageW(window, cursorMessage, 0, 0);
}
