#pragma once

#include <afxwin.h>

#include <functional>
#include <vector>

namespace exam {

/// One line of a form.
struct FormField
{
    CString label;
    CString value = {};
    std::vector<CString> choices = {}; ///< the value is one of these; empty: any text
    bool isLong = false;               ///< the text has room for several lines
    bool isFolder = false;             ///< a folder, which can be looked for too
};

/// Gives a sentence that says what is wrong with the values of a form, or nothing.
using FormCheck = std::function<CString(const std::vector<FormField>& fields)>;

/// Asks the user to fill a form, until nothing is wrong with it. False, with the fields as they
/// were, when the user cancels.
bool AskForm(HWND owner, const CString& title, std::vector<FormField>& fields,
             const FormCheck& check);

} // namespace exam
