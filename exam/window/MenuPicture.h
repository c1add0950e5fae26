#pragma once

#include <afxwin.h>

namespace exam {

/// Draws the picture of a command, a file of the tool bar's pictures, onto the ground of menus. It
/// is grey for a command that is not possible now. Nothing is drawn without the file.
void DrawMenuPicture(CDC& dc, const CRect& area, const wchar_t* name, bool isPossible);

} // namespace exam
