#pragma once

#include <afxwin.h>

#include <array>

namespace exam {

// An image of `size` turned about its centre, and the smallest upright rectangle that holds it;
// coordinates relative to the centre, y downwards.
struct RotatedOutline
{
    std::array<CPoint, 4> corners;
    CRect bounds;
};

// `angle` in tenths of a degree.
RotatedOutline RotateImageOutline(CSize size, int angle);

// Draws the outline and its bounding box, scaled down into `area`.
void DrawRotatedOutline(CDC& dc, const CRect& area, const RotatedOutline& outline);

} // namespace exam
