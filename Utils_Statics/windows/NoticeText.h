#pragma once

#include <windows.h>

#include <cstdarg>
#include <memory>

namespace utils_statics {

// The text of a notice, or the reason for its absence.
struct NoticeText
{
    HRESULT result;
    std::unique_ptr<wchar_t[]> text; // null unless `result` is S_OK
};

// Formats like the platform's wide printf, into 8192 characters more than the format has. Text
// arguments that are null or unreadable become empty texts, so a format that takes other arguments
// for texts does not end the program. From the first unknown conversion on (text/FormatText.h),
// arguments are no longer checked, and %n writes nothing.
NoticeText FormatNotice(const wchar_t* format, va_list arguments);

} // namespace utils_statics
