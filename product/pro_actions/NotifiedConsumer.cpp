#include "pro_actions/NotifiedConsumer.h"

#include "Broadcast.h"
#include "ConsumerRegistry.h"

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
