#pragma once

#include <afxwin.h>

// The running application's object. Without one there is no main window, and every setting has its
// default.
namespace utils_statics {

// The application's main window; null when there is no application, no main window object, or the
// object has no window. Any thread may call this.
inline HWND MainWindow()
{
    CWinApp* const application = AfxGetApp();
    CWnd* const window = application ? application->GetMainWnd() : nullptr;
    return window ? window->GetSafeHwnd() : nullptr;
}

// Settings in the application's profile.
inline unsigned int ProfileNumber(const wchar_t* section, const wchar_t* entry, int defaultValue)
{
    CWinApp* const application = AfxGetApp();
    return application ? application->GetProfileInt(section, entry, defaultValue)
                       : static_cast<unsigned int>(defaultValue);
}

inline CString ProfileText(const wchar_t* section, const wchar_t* entry,
                           const wchar_t* defaultValue)
{
    CWinApp* const application = AfxGetApp();
    return application ? application->GetProfileString(section, entry, defaultValue)
                       : CString(defaultValue);
}

} // namespace utils_statics
