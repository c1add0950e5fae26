#pragma once

#include "screen/ScreenContent.h"

#include <afxwin.h>

namespace exam {

// The column of facts beside the image: console, modes, probe, depth and what the tools measure, in
// the current language.
void DrawInfoPanel(CDC& dc, const CRect& area, const ScreenContent& content);

} // namespace exam
