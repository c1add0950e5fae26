#pragma once

#include "state/ExamState.h"

// The screen says these things of a running recording, in the current language.
namespace exam {

/// The time so far, such as "REC 1:05".
CString RecordingTimeText(const RunningRecording& recording);

/// Its frames, and the time and the space that are left as far as they are known, such as
/// "12 frames, 1:02:05 left, 3.4 GB free".
CString RecordingRoomText(const RunningRecording& recording);

} // namespace exam
