#pragma once

#include <windows.h>

namespace exam {

/// Opens the menu of the service staff at the mouse pointer and carries out the choice, which is a
/// crash on purpose. Does nothing outside the service mode. Returns when the menu is closed.
void ShowServiceMenu(HWND owner);

} // namespace exam
