#pragma once

#include <afxwin.h>

namespace utils_statics {

// The application's main window; null when there is no application, no main window, or no window of
// it. On any thread.
inline HWND MainWindow()
{
    CWinApp* const application = AfxGetApp();
    CWnd* const window = application ? application->GetMainWnd() : nullptr;
    return window ? window->GetSafeHwnd() : nullptr;
}

} // namespace utils_statics
