#pragma once

#include <Utils_Statics/StateChangeType.h>
#include <Utils_Statics/utilsExam.h>

#include <cstdint>

/// The values of the state-change signal. The library declares their type, and the application
/// defines them.
enum StateChangeType : std::int32_t
{
    stateImageChanged = 1,       ///< another recording or frame is on display
    stateLanguageChanged = 2,    ///< the texts are in another language
    stateMeasurementChanged = 3, ///< a mark or the study changed, or the mark in hand did
    stateDisplayChanged = 4,     ///< something else on the screen changed
    stateFitChanged = 5,         ///< the image has another size; its frame follows
    stateSettingsChanged = 6     ///< settings were changed
};

namespace exam {

/// Tells every consumer of the state-change signal.
inline void TellChange(StateChangeType change)
{
    utilsExam::StateChangeSignal(change, 0, 0);
}

} // namespace exam
