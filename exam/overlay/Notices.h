#pragma once

#include <atlstr.h>

namespace exam {

enum class NoticeKind
{
    finished,
    warning,
    error
};

/// Shows a sentence in the current language as a balloon, with a title of its kind, and logs it.
/// Any thread may call it; the balloon is shown while the main window is open.
void RaiseNotice(NoticeKind kind, const CString& sentence);

} // namespace exam
