#pragma once

#include "measure/MarkShapes.h"

#include <afxwin.h>

namespace exam {

/// How a mark looks now.
struct MarkLook
{
    bool isSelected = false;
    int active = -1; ///< the point in hand; -1: none
    CRect area;      ///< the place of its surface, in client pixels
};

/// Draws a mark in client pixels: its lines, its points, and its number. A text stands at its
/// point.
void DrawMark(CDC& dc, const Mark& mark, const PixelPoints& points, const MarkLook& look);

} // namespace exam
