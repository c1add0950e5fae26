#pragma once

#include "screen/ScreenContent.h"

#include <afxwin.h>

namespace exam {

// Draws the column of facts beside the image in the current language: console, modes, probe, depth
// and the results of the tools.
void DrawInfoPanel(CDC& dc, const CRect& area, const ScreenContent& content);

} // namespace exam
