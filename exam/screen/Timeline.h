#pragma once

#include "state/ExamState.h"

#include <afxwin.h>

namespace exam {

/// Draws the frames of the recording as a line, with a mark at the one on display and a thin one at
/// each that was marked, in the layout's place for it.
void DrawTimeline(CDC& dc, const ExamState& state);

/// The place of the frame at a pixel of the timeline, from 0 on; the nearest one beside its ends.
int PlaceAt(const ExamState& state, int x);

} // namespace exam
