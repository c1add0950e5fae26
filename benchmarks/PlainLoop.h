#pragma once

#include <Utils_Statics/IStateChangeConsumer.h>

#include <memory>
#include <vector>

using Consumers = std::vector<std::unique_ptr<IStateChangeConsumer>>;

/// Calls every handler by a plain loop. It has a source of its own, where the compiler does not see
/// the consumers' class, so the calls stay virtual as in the library.
void CallAll(const Consumers& consumers, StateChangeType type, unsigned int param1, long param2);
