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

constinit thread_local Nesting nesting;

class NestingScope
{
public:
    NestingScope() noexcept
    {
        if (nesting.depth++ == 0) nesting.broadcasts = 0;
        ++nesting.broadcasts;
    }
    ~NestingScope() { --nesting.depth; }
    NestingScope(const NestingScope&) = delete;
    NestingScope& operator=(const NestingScope&) = delete;

    static bool isRunaway() noexcept
    {
        return nesting.depth > maxNesting || nesting.broadcasts > maxBroadcasts;
    }
};

template <typename Tell>
bool broadcast(ConsumerRegistry& registry, const ActionStateInfo& topic, const Tell& tell)
{
    const NestingScope scope;
    if (NestingScope::isRunaway()) return false;
    const ConsumerRegistry::Serial end = registry.nextSerial();
    ConsumerRegistry::Serial from = 0;
    std::exception_ptr failure;
    while (IActionStateConsumer* const consumer = registry.next(topic, from, end)) {
        try {
            tell(*consumer);
        } catch (...) {
            if (!failure) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
    return true;
}

bool addRegistration(ConsumerRegistry& registry, IActionStateConsumer& consumer,
                     const ActionStateInfo& topic) noexcept
{
    try {
        registry.add(consumer, topic);
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
    return broadcast(ConsumerRegistry::ofStates(), topic, [&](IActionStateConsumer& consumer) {
        consumer.ActionStateChanged(topic, value);
    });
}

bool IActionStateConsumer::ActionNotificationSignal(ActionType type, int action, int param)
{
    return broadcast(
        ConsumerRegistry::ofNotifications(), ActionStateInfo(),
        [=](IActionStateConsumer& consumer) { consumer.ActionNotification(type, action, param); });
}

bool IActionStateConsumer::RegisterActionSignal(const ActionStateInfo& state) noexcept
{
    return addRegistration(ConsumerRegistry::ofStates(), *this, state);
}

void IActionStateConsumer::UnregisterActionSignal(const ActionStateInfo& state) noexcept
{
    ConsumerRegistry::ofStates().remove(*this, state);
}

bool IActionStateConsumer::RegisterActionNotification() noexcept
{
    return addRegistration(ConsumerRegistry::ofNotifications(), *this, ActionStateInfo());
}

void IActionStateConsumer::UnregisterActionNotification() noexcept
{
    ConsumerRegistry::ofNotifications().removeAll(*this);
}

void IActionStateConsumer::UnregisterAll() noexcept
{
    ConsumerRegistry::ofStates().removeAll(*this);
    ConsumerRegistry::ofNotifications().removeAll(*this);
}
