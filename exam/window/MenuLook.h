#pragma once

#include <afxwin.h>

namespace exam {

/// The colour behind the items of a menu. The brush lives as long as the program.
HBRUSH MenuBackground();

/// Gives the part of a window's menu bar that holds no item the same colour, which not every
/// platform does by itself.
void DrawMenuBarRest(HWND window);

/// The look of the items of Menus.h, for WM_MEASUREITEM and WM_DRAWITEM of the window that shows
/// them. `dpi` is that of the window.
void MeasureMenuItem(MEASUREITEMSTRUCT& item, int dpi);
void DrawMenuItem(const DRAWITEMSTRUCT& item, int dpi);

} // namespace exam
