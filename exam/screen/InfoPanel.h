#pragma once

#include "state/ExamState.h"

#include <afxwin.h>

namespace exam {

/// Draws the column of facts beside the image in the current language: console, modes, probe, depth
/// and the results of the tools. Where it is too low for labels above their values, they stand side
/// by side.
void DrawInfoPanel(CDC& dc, const ExamState& state);

} // namespace exam
