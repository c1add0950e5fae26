#pragma once

#include "state/ExamState.h"

#include <afxwin.h>

namespace exam {

/// Draws the frames of the recording as a line with a mark at the one on display, in the layout's
/// place for it.
void DrawTimeline(CDC& dc, const ExamState& state);

/// The number of the frame at a pixel of the timeline; the nearest one beside its ends.
int FrameAt(const ExamState& state, int x);

} // namespace exam
