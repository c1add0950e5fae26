#pragma once

#include <afxwin.h>

namespace exam {

// Draws a red dot and the number of frames that were recorded.
void DrawRecordingMark(CDC& dc, const CRect& area, int frames);

} // namespace exam
