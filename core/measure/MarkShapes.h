#pragma once

#include "measure/MarkSurface.h"

#include <cstddef>
#include <optional>
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

/// The points that the arbitration offers one by one. A trace has too many, and a flow none.
std::size_t Grips(const Mark& mark);

/// The point that a place of a mark means: its grips come first, then the mark as a whole, which is
/// no point, and then the points of a trace.
std::optional<std::size_t> PointAtPlace(const Mark& mark, int place);

/// The lines that a mark is drawn by, as one path from point to point; none for a text. That of a
/// flow is the smooth curve through its points.
PixelPoints OutlineOf(MarkKind kind, const PixelPoints& points);

/// The distance of a place from the nearest part of a path; huge for an empty one.
double DistanceFrom(const PixelPoints& path, const PixelPoint& place);

/// The line of a path that is nearest to a place, by the index of the point that it ends at.
std::size_t NearestLine(const PixelPoints& path, const PixelPoint& place);

/// True for a place within a closed path.
bool Encloses(const PixelPoints& path, const PixelPoint& place);

} // namespace exam
