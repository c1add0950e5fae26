#pragma once

#include "qor_utils/zelLogger.h"

namespace qor_utils {

// Exchanges the hook and waits until no other thread is inside the former one; a call from inside a
// hook does not wait.
void ExchangeLogHook(zelLogger::Hook hook, void* userData);

// Hands a message to the hook, if there is one and this thread is not inside one already.
void CallLogHook(const zelLogger::Message& message) noexcept;

} // namespace qor_utils
