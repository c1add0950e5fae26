#pragma once

#include <windows.h>

namespace exam {

/// The dots per inch of the screen that a window is on.
int DpiOf(HWND window);

/// Takes the screen for one of other dots per inch, to look at windows as they are there. 0: as it
/// is.
void AssumeDpi(int dpi);

} // namespace exam
