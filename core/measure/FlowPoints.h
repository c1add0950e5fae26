#pragma once

#include "measure/SpectralStrip.h"
#include "study/Mark.h"

#include <vector>

namespace exam {

/// The points that a strip's spectra give for a mark from one time to another: the envelope for a
/// flow, and the middle of each systole that lies wholly between for a heart rate. They follow the
/// direction in which the flow is faster. Where the spectra give too few, the points are both
/// times, at the baseline.
std::vector<MarkPoint> FlowPoints(const SpectralStrip& strip, MarkKind kind, double from,
                                  double to);

} // namespace exam
