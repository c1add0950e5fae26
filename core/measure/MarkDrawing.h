#pragma once

#include "measure/MarkShapes.h"

#include <afxwin.h>

namespace exam {

/// This says how a mark looks now.
struct MarkLook
{
    bool isSelected = false;
    int active = -1;  ///< the point in hand; -1: none
    CRect area;       ///< the place of its surface, in client pixels
    double scale = 1; ///< the pixels that stand for one pixel at 96 dpi

    int Scaled(int pixels) const { return static_cast<int>(pixels * scale + 0.5); }
};

/// Draws what of a mark lies on its surface, in client pixels: its lines, its points, and its
/// number, which stays on the surface. A text stands at its point.
void DrawMark(CDC& dc, const Mark& mark, const PixelPoints& points, const MarkLook& look);

} // namespace exam
