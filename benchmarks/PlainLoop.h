#pragma once

#include <Utils_Statics/IStateChangeConsumer.h>

#include <memory>
#include <vector>

using Consumers = std::vector<std::unique_ptr<IStateChangeConsumer>>;

/// Calls every handler by a plain loop. In a source of its own, where the compiler does not see
/// which class the consumers are of, as the library does not: their calls stay virtual.
void CallAll(const Consumers& consumers, StateChangeType type, unsigned int param1, long param2);
