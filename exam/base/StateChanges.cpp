#include "base/StateChanges.h"

#include <Utils_Statics/utilsExam.h>

namespace exam {

void TellChange(StateChangeType change)
{
    utilsExam::StateChangeSignal(change, 0, 0);
}

} // namespace exam
