#pragma once

#include <afxwin.h>

#include <initializer_list>
#include <span>

namespace exam {

/// Draws straight lines from point to point with the pen that is selected. As the platform's lines,
/// they end before the last point.
void DrawLines(CDC& dc, std::span<const CPoint> points);
void DrawLines(CDC& dc, std::initializer_list<CPoint> points);

} // namespace exam
