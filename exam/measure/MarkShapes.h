#pragma once

#include "measure/MarkSurface.h"

#include <cstddef>
#include <vector>

// The shapes of marks in client pixels.
namespace exam {

using PixelPoints = std::vector<PixelPoint>;

/// The pixel that a position falls on, and the middle of a pixel.
CPoint PixelAt(const PixelPoint& point);
PixelPoint Exactly(CPoint pixel);

PixelPoint MiddleOf(const CRect& area);
/// The place by which a mark is moved as a whole.
PixelPoint MiddleOf(const PixelPoints& points);

double Distance(const PixelPoint& a, const PixelPoint& b);

/// The points of a new mark of any kind but a trace and a flow, whose drag goes from one place to
/// another.
PixelPoints PointsOfDrag(MarkKind kind, const PixelPoint& from, const PixelPoint& to);

/// The points of a new mark round a place, of a size that is easy to work.
PixelPoints PointsAround(MarkKind kind, const PixelPoint& middle);

/// Puts one point of a mark elsewhere. What the kind needs follows: the third point of an ellipse
/// stays at the end of the other axis.
void PutPoint(MarkKind kind, PixelPoints& points, std::size_t index, const PixelPoint& to);

/// The points that are put elsewhere one by one. A trace and a flow have none.
std::size_t Grips(const Mark& mark);

/// The lines that a mark is drawn by, as one path from point to point; none for a text.
PixelPoints OutlineOf(MarkKind kind, const PixelPoints& points);

/// The distance of a place from the nearest part of a path; huge for an empty one.
double DistanceFrom(const PixelPoints& path, const PixelPoint& place);

} // namespace exam
