#pragma once

#include "image/RawCine.h"

#include <string>

namespace exam {

/// One sentence that says why frames with this header cannot be shown; empty when they can.
std::wstring FindHeaderProblem(const CineDescription& description);

/// One sentence that says how the size of a file differs from its header's count; empty when it
/// does not. The header must be one without a problem.
std::wstring FindSizeProblem(const RawCine& cine);

} // namespace exam
