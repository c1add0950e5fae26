#pragma once

#include "image/FrameSource.h"
#include "study/StudyContent.h"

#include <afxwin.h>

#include <string>

namespace exam {

/// Draws a frame of a recording with those marks of a study that lie on it, into a picture of
/// `size` pixels, and saves it as a PNG file. It is white outside the imaged region, for paper.
/// False when that is not possible.
bool SaveMarkedFrame(const FrameSource& source, int frame, const StudyContent& study,
                     const std::wstring& object, CSize size, const std::wstring& path);

} // namespace exam
