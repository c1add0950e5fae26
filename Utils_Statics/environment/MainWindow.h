#pragma once

#include <afxwin.h>

namespace utils_statics {

// The application's main window; null when there is no application, no main window object, or the
// object has no window. Any thread may call this.
inline HWND MainWindow()
{
    CWinApp* const application = AfxGetApp();
    CWnd* const window = application ? application->GetMainWnd() : nullptr;
    return window ? window->GetSafeHwnd() : nullptr;
}

} // namespace utils_statics
