#pragma once

#include "image/RawCine.h"

#include <string>

namespace exam {

/// Why frames with this header cannot be shown: one sentence; empty when they can.
std::wstring FindHeaderProblem(const CineDescription& description);

/// In what the size of a file differs from what its header counts: one sentence; empty when it does
/// not. The header must be one without a problem.
std::wstring FindSizeProblem(const RawCine& cine);

} // namespace exam
