#pragma once

#include <qor_utils/LogOutput.h>

namespace qor_utils {

// Passes a message to the hook, if there is one and this thread is not inside one already.
void CallLogHook(const LogMessage& message) noexcept;

} // namespace qor_utils
