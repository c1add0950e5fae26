#pragma once

#include <Utils_Statics/StateChangeType.h>

#include <cstdint>

/// The meanings that this application gives to the state-change signal. The type is the library's;
/// its values are the application's to define.
enum StateChangeType : std::int32_t
{
    stateImageChanged = 1,       ///< another recording or frame is on display
    stateLanguageChanged = 2,    ///< the texts are in another language
    stateMeasurementChanged = 3, ///< a tool was shown, hidden, grabbed, moved or let go
    stateDisplayChanged = 4      ///< something else on the screen
};

namespace exam {

/// Tells every consumer of the state-change signal.
void TellChange(StateChangeType change);

} // namespace exam
