#pragma once

#include "ConsumerRegistry.h"

#include <exception>

namespace pro_actions {

// A broadcast in progress on this thread; it may be within notifications of others.
class BroadcastScope
{
public:
    BroadcastScope() noexcept;
    ~BroadcastScope();
    BroadcastScope(const BroadcastScope&) = delete;
    BroadcastScope& operator=(const BroadcastScope&) = delete;

    // True when broadcasts are nested so deep, or are so many, that they would go on for ever.
    static bool IsRunaway() noexcept;
};

// Tells every consumer that was registered for the topic when the broadcast began. False when the
// broadcast was dropped. A consumer's exception is rethrown after all were told; of several, the
// first.
template <typename Tell>
bool Broadcast(ConsumerRegistry& registry, const ActionStateInfo& topic, const Tell& tell)
{
    const BroadcastScope scope;
    if (BroadcastScope::IsRunaway()) return false;
    ConsumerRegistry::Walk walk = registry.Begin(topic);
    std::exception_ptr failure;
    while (IActionStateConsumer* const consumer = registry.Next(walk)) {
        try {
            tell(*consumer);
        } catch (...) {
            if (!failure) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
    return true;
}

} // namespace pro_actions
