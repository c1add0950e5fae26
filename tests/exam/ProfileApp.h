#pragma once

#include <afxwin.h>

#include <cstdlib>
#include <string>

namespace exam {

// The application object of the program. The settings are read through it.
inline CWinApp s_app;

// Keeps the settings in an INI file from now on.
inline void UseProfile(const std::wstring& file)
{
    std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
    s_app.m_pszProfileName = _wcsdup(file.c_str());
}

} // namespace exam
