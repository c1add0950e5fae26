#pragma once

#include <afxwin.h>

#include <array>

namespace exam {

/// The corners of an image that is turned about its centre, and the smallest upright rectangle that
/// holds them. Coordinates are relative to the centre; y points downwards.
struct RotatedOutline
{
    std::array<CPoint, 4> corners;
    CRect bounds;
};

/// Turns the outline of an image of `size`; `angle` in tenths of a degree.
RotatedOutline RotateImageOutline(CSize size, int angle);

/// Draws the outline and its bounding box, scaled down into `area`.
void DrawRotatedOutline(CDC& dc, const CRect& area, const RotatedOutline& outline);

} // namespace exam
