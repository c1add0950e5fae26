#pragma once

#include "record/StudyArchive.h"

#include <afxwin.h>

#include <functional>

namespace exam {

/// Does the work on a thread of its own while a window shows its progress. All windows live
/// meanwhile, but the owner takes no input. The user may cancel, which takes effect at once.
ArchiveResult WorkWithProgress(CWnd& owner, const CString& title,
                               const std::function<ArchiveResult(const ArchiveProgress&)>& work);

} // namespace exam
