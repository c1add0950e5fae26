#pragma once

#include <windows.h>

#include <cstdarg>
#include <memory>

namespace utils_statics {

// The text of a notice, or why there is none.
struct NoticeText
{
    HRESULT result;
    std::unique_ptr<wchar_t[]> text; // null unless `result` is S_OK
};

// Formats as the platform's wide printf does, into 8192 characters more than the format has. Text
// arguments that are null or cannot be read become empty texts; so a format that asks for texts
// where other arguments were passed does not end the program. From a conversion on that is not
// known (text/FormatText.h), arguments are no longer looked at, and %n no longer written.
NoticeText FormatNotice(const wchar_t* format, va_list arguments);

} // namespace utils_statics
