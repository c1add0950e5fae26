#pragma once

#include <windows.h>

namespace exam {

/// Opens the menu of the service staff at the mouse pointer and does what is chosen: a crash on
/// purpose. Does nothing outside of the service mode. Returns when the menu is closed.
void ShowServiceMenu(HWND owner);

} // namespace exam
