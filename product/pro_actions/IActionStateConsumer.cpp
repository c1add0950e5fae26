#include "pro_actions/IActionStateConsumer.h"

#include "ConsumerRegistry.h"

#include <pro_actions/NotifiedConsumer.h>

#include <exception>

using pro_actions::ConsumerRegistry;

namespace {

constexpr int maxNesting = 64;
constexpr int maxBroadcasts = 10000;

// The state of this thread's broadcasts within its outermost one.
struct Nesting
{
    int depth = 0;
    int broadcasts = 0;
};

constinit thread_local Nesting s_nesting;

// A broadcast in progress on this thread; it may be within notifications of others.
class BroadcastScope
{
public:
    BroadcastScope() noexcept
    {
        if (s_nesting.depth++ == 0) s_nesting.broadcasts = 0;
        ++s_nesting.broadcasts;
    }
    ~BroadcastScope() { --s_nesting.depth; }
    BroadcastScope(const BroadcastScope&) = delete;
    BroadcastScope& operator=(const BroadcastScope&) = delete;

    // True when broadcasts are nested so deep, or are so many, that they would go on for ever.
    static bool IsRunaway() noexcept
    {
        return s_nesting.depth > maxNesting || s_nesting.broadcasts > maxBroadcasts;
    }
};

// Tells every consumer that was registered for the topic when the broadcast began. False when the
// broadcast was dropped. A consumer's exception is rethrown after all were told; of several, the
// first.
template <typename Tell>
bool Broadcast(ConsumerRegistry& registry, const ActionStateInfo& topic, const Tell& tell)
{
    const BroadcastScope scope;
    if (BroadcastScope::IsRunaway()) return false;
    ConsumerRegistry::Walk walk(topic);
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

} // namespace

IActionStateConsumer::IActionStateConsumer() noexcept = default;

IActionStateConsumer::~IActionStateConsumer()
{
    ConsumerRegistry::OfStates().RemoveAll(*this);
    ConsumerRegistry::OfNotifications().RemoveAll(*this);
}

bool IActionStateConsumer::ActionStateSignal(const ActionStateInfo& state, int value)
{
    // A copy: the caller's state may be a member of a consumer that is destroyed on the way.
    const ActionStateInfo topic = state;
    return Broadcast(ConsumerRegistry::OfStates(), topic, [&](IActionStateConsumer& consumer) {
        consumer.ActionStateChanged(topic, value);
    });
}

void IActionStateConsumer::RegisterActionSignal(const ActionStateInfo& state)
{
    ConsumerRegistry::OfStates().Add(*this, state);
}

namespace pro_actions {

bool SignalActionNotification(ActionType type, int action, int param)
{
    return Broadcast(
        ConsumerRegistry::OfNotifications(), ActionStateInfo(),
        [=](IActionStateConsumer& consumer) { consumer.ActionNotification(type, action, param); });
}

NotifiedConsumer::NotifiedConsumer() noexcept = default;

NotifiedConsumer::~NotifiedConsumer() = default;

void NotifiedConsumer::UnregisterActionSignal(const ActionStateInfo& state) noexcept
{
    ConsumerRegistry::OfStates().Remove(*this, state);
}

void NotifiedConsumer::RegisterActionNotification()
{
    ConsumerRegistry::OfNotifications().Add(*this, ActionStateInfo());
}

void NotifiedConsumer::UnregisterActionNotification() noexcept
{
    ConsumerRegistry::OfNotifications().RemoveAll(*this);
}

void NotifiedConsumer::UnregisterAll() noexcept
{
    ConsumerRegistry::OfStates().RemoveAll(*this);
    ConsumerRegistry::OfNotifications().RemoveAll(*this);
}

} // namespace pro_actions
