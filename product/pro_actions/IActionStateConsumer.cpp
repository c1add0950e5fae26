#include <pro_actions/IActionStateConsumer.h>

#include "ConsumerRegistry.h"

#include <exception>

namespace {

using pro_actions::ConsumerRegistry;

constexpr int maxNesting = 64;
constexpr int maxBroadcasts = 10000;

// This thread's broadcasts below its outermost one.
struct Nesting
{
    int depth = 0;
    int broadcasts = 0;
};

constinit thread_local Nesting s_nesting;

class NestingScope
{
public:
    NestingScope() noexcept
    {
        if (s_nesting.depth++ == 0) s_nesting.broadcasts = 0;
        ++s_nesting.broadcasts;
    }
    ~NestingScope() { --s_nesting.depth; }
    NestingScope(const NestingScope&) = delete;
    NestingScope& operator=(const NestingScope&) = delete;

    static bool IsRunaway() noexcept
    {
        return s_nesting.depth > maxNesting || s_nesting.broadcasts > maxBroadcasts;
    }
};

template <typename Tell>
bool Broadcast(ConsumerRegistry& registry, const ActionStateInfo& topic, const Tell& tell)
{
    const NestingScope scope;
    if (NestingScope::IsRunaway()) return false;
    const ConsumerRegistry::Serial end = registry.NextSerial();
    ConsumerRegistry::Serial from = 0;
    std::exception_ptr failure;
    while (IActionStateConsumer* const consumer = registry.Next(topic, from, end)) {
        try {
            tell(*consumer);
        } catch (...) {
            if (!failure) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
    return true;
}

bool AddRegistration(ConsumerRegistry& registry, IActionStateConsumer& consumer,
                     const ActionStateInfo& topic) noexcept
{
    try {
        registry.Add(consumer, topic);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

IActionStateConsumer::IActionStateConsumer() noexcept = default;

IActionStateConsumer::~IActionStateConsumer()
{
    UnregisterAll();
}

bool IActionStateConsumer::ActionStateSignal(const ActionStateInfo& state, int value)
{
    // A copy: the caller's state may be a member of a consumer that is destroyed on the way.
    const ActionStateInfo topic = state;
    return Broadcast(ConsumerRegistry::OfStates(), topic, [&](IActionStateConsumer& consumer) {
        consumer.ActionStateChanged(topic, value);
    });
}

bool IActionStateConsumer::ActionNotificationSignal(ActionType type, int action, int param)
{
    return Broadcast(
        ConsumerRegistry::OfNotifications(), ActionStateInfo(),
        [=](IActionStateConsumer& consumer) { consumer.ActionNotification(type, action, param); });
}

bool IActionStateConsumer::RegisterActionSignal(const ActionStateInfo& state) noexcept
{
    return AddRegistration(ConsumerRegistry::OfStates(), *this, state);
}

void IActionStateConsumer::UnregisterActionSignal(const ActionStateInfo& state) noexcept
{
    ConsumerRegistry::OfStates().Remove(*this, state);
}

bool IActionStateConsumer::RegisterActionNotification() noexcept
{
    return AddRegistration(ConsumerRegistry::OfNotifications(), *this, ActionStateInfo());
}

void IActionStateConsumer::UnregisterActionNotification() noexcept
{
    ConsumerRegistry::OfNotifications().RemoveAll(*this);
}

void IActionStateConsumer::UnregisterAll() noexcept
{
    ConsumerRegistry::OfStates().RemoveAll(*this);
    ConsumerRegistry::OfNotifications().RemoveAll(*this);
}
