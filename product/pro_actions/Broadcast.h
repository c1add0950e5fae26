#pragma once

#include "ConsumerRegistry.h"

#include <exception>

namespace pro_actions {

// One broadcast under way on this thread; it may be within notifications of others.
class BroadcastScope
{
public:
    BroadcastScope() noexcept;
    ~BroadcastScope();
    BroadcastScope(const BroadcastScope&) = delete;
    BroadcastScope& operator=(const BroadcastScope&) = delete;

    // Whether it is nested so deep, or is one of so many, that it would go on for ever.
    static bool IsRunaway() noexcept;
};

// Tells every consumer that was registered for the topic when the broadcast began. False when the
// broadcast was dropped. The first exception of a consumer goes on when all were told.
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
