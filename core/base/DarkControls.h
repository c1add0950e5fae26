#pragma once

#include <afxwin.h>

namespace exam {

/// Draws a push button with the text of its window.
void DrawDarkButton(CDC& dc, HWND button, bool isPressed, bool hasFocus);

/// Answers a control that asks for its colours: those of a text on the panel's ground or the
/// header's. The result is the brush of the ground, which lives as long as the program.
LRESULT DarkColours(WPARAM context, COLORREF ground);

/// Lets a push button, a check box, a drop-down list or a progress bar from 0 on look like the rest
/// of the application from now on. The platform does all the rest.
void Darken(HWND control);

/// Lets the title bar of a window be dark where the platform has dark ones.
void DarkenFrame(HWND window);

/// Lets the scroll bars of a control be dark where the platform has dark ones.
void DarkenScrollBars(HWND control);

/// Draws a tick around a point. `dpi`: the dots per inch of the screen.
void DrawTick(CDC& dc, CPoint middle, int dpi);

} // namespace exam
