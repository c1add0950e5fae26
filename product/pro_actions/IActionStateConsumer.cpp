#include "pro_actions/IActionStateConsumer.h"

#include "Broadcast.h"
#include "ConsumerRegistry.h"

using pro_actions::ConsumerRegistry;

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
    return pro_actions::Broadcast(
        ConsumerRegistry::OfStates(), topic,
        [&](IActionStateConsumer& consumer) { consumer.ActionStateChanged(topic, value); });
}

void IActionStateConsumer::RegisterActionSignal(const ActionStateInfo& state)
{
    ConsumerRegistry::OfStates().Add(*this, state);
}
