#pragma once

#include "study/Mark.h"

#include <Utils_Statics/spectralTraceData.h>

#include <vector>

namespace exam {

/// The velocity at a height of the spectral display, in pixels above its lower edge, by the scale
/// of CDopplerScaling. 0 is the baseline: the middle of the spectrum.
double VelocityAt(double pixel);

/// The height of the spectral display at which a velocity lies: the inverse of VelocityAt. The
/// baseline when the display has no scale.
double PixelOf(double velocity);

/// The columns from `first` up to, but not including, `last` of a trace of spectral bins, as points
/// of the strip. `secondsPerColumn` must be positive. Columns outside the trace give no points.
std::vector<MarkPoint> TracePoints(const spectralTraceData& traces, eTraceType type, int first,
                                   int last, double secondsPerColumn);

/// The points of a trace moved in y onto the polynomial of this degree (1 to 8) that has the least
/// squares of distances to them. The points are unchanged when they are too few or too close
/// together for such a curve.
std::vector<MarkPoint> CurveThrough(const std::vector<MarkPoint>& trace, int degree);

/// A trace of any length without its noise: each point lies on the curve of the third degree
/// through its neighbours. A trace that is too short for that is unchanged.
std::vector<MarkPoint> SmoothTrace(const std::vector<MarkPoint>& trace);

} // namespace exam
