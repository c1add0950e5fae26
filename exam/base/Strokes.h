#pragma once

#include <afxwin.h>

#include <initializer_list>
#include <span>

namespace exam {

/// Draws straight lines from point to point with the selected pen. The last point itself is not
/// drawn.
void DrawLines(CDC& dc, std::span<const CPoint> points);
void DrawLines(CDC& dc, std::initializer_list<CPoint> points);

} // namespace exam
