#pragma once

#include <afxwin.h>

namespace exam {

// Draws a red dot and the number of recorded frames.
void DrawRecordingMark(CDC& dc, const CRect& area, int frames);

} // namespace exam
