#pragma once

#include "tour/Tour.h"

#include <string>

namespace exam {

/// Measures the patient of the probe on display, lets it stand still, and compares with the truth.
void TourTruth(TourContext& context, const std::wstring& name);

} // namespace exam
