#pragma once

#include "screen/ScreenContent.h"

#include <afxwin.h>

namespace exam {

/// Paints the whole client area: header, image with its scale and tools, recording mark, facts and
/// status line.
void DrawScreen(CDC& dc, const ScreenContent& content);

} // namespace exam
