#pragma once

namespace exam {

// The meanings that this application gives to the state-change signal.
enum ExamStateChange
{
    stateImageChanged =
        1, // another recording or frame is on display; param1: recording, param2: frame
    stateLanguageChanged = 2,    // the texts are in another language
    stateMeasurementChanged = 3, // a tool was shown, hidden, grabbed, moved or let go
    stateDisplayChanged = 4      // something else on the screen
};

} // namespace exam
