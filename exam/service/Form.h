#pragma once

#include <afxwin.h>

#include <functional>
#include <vector>

namespace exam {

/// One line of a form.
struct FormField
{
    CString label;
    CString value;
    std::vector<CString> choices = {}; ///< the value is one of these; empty: any text
    bool isLong = false;               ///< the text has room for several lines
};

/// Asks the user to fill a form. `check` gives a sentence that says what is wrong with the values,
/// or nothing. False, with the fields as they were, when the user cancels.
bool AskForm(HWND owner, const CString& title, std::vector<FormField>& fields,
             const std::function<CString(const std::vector<FormField>& fields)>& check);

} // namespace exam
