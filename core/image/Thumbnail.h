#pragma once

#include "image/FrameSource.h"

#include <afxwin.h>

namespace exam {

/// Paints the first frame that there is as a small picture. Without one the picture is black.
void PaintThumbnail(const FrameSource& source, CSize size, CBitmap& picture);

} // namespace exam
