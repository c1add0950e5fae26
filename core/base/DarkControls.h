#pragma once

#include <afxwin.h>

namespace exam {

/// Draws a push button with the text of its window.
void DrawDarkButton(CDC& dc, HWND button, bool isPressed, bool hasFocus);

/// Lets a push button, a check box, a drop-down list or a progress bar from 0 on look like the rest
/// of the application from now on. The platform does all the rest.
void Darken(HWND control);

/// Draws a tick around a point. `dpi`: the dots per inch of the screen.
void DrawTick(CDC& dc, CPoint middle, int dpi);

} // namespace exam
