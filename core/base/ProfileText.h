#pragma once

#include <afxwin.h>

namespace exam {

/// A value of the profile as a text, whether it is kept as a number or as a text; empty when there
/// is none. Numbers below 0 count as none.
inline CString ProfileText(const wchar_t* section, const wchar_t* entry)
{
    CString text = AfxGetApp()->GetProfileString(section, entry, L"");
    const int number = static_cast<int>(AfxGetApp()->GetProfileInt(section, entry, -1));
    if (text.IsEmpty() && number >= 0) text.Format(L"%d", number);
    return text;
}

} // namespace exam
