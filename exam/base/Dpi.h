#pragma once

#include <windows.h>

namespace exam {

/// The dots per inch of the screen that a window is on.
int DpiOf(HWND window);

} // namespace exam
