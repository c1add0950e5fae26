#pragma once

#include <Utils_Statics/StateChangeType.h>

#include <cstdint>

/// The values of the state-change signal. The library declares their type, and the application
/// defines them.
enum StateChangeType : std::int32_t
{
    stateImageChanged = 1,       ///< another recording or frame is on display
    stateLanguageChanged = 2,    ///< the texts are in another language
    stateMeasurementChanged = 3, ///< a tool was shown, hidden, grabbed, moved or let go
    stateDisplayChanged = 4      ///< something else on the screen changed
};

namespace exam {

/// Tells every consumer of the state-change signal.
void TellChange(StateChangeType change);

} // namespace exam
