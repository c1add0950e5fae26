#pragma once

#include <afxwin.h>

// Settings in the running application's profile. Without an application object every setting has
// its default.
namespace utils_statics {

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
