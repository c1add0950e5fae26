#pragma once

#include "status/StatusDisplay.h"
#include "tour/Tour.h"

namespace exam {

/// Shows the status row in each of its states, fed by its settings page, the items' setters, the
/// events of the simulated network and the readings of the simulated probe.
void TourStatus(TourContext& context, StatusDisplay& status);

} // namespace exam
