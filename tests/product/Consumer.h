#pragma once

#include "ActionStates.h"

#include <pro_actions/NotifiedConsumer.h>

#include <functional>
#include <utility>
#include <vector>

using Event = std::pair<ActionStateInfo, int>;

// Keeps the notifications, and then does what the test asks.
class Consumer : public pro_actions::NotifiedConsumer
{
public:
    using IActionStateConsumer::RegisterActionSignal;
    using NotifiedConsumer::RegisterActionNotification;
    using NotifiedConsumer::UnregisterActionNotification;
    using NotifiedConsumer::UnregisterActionSignal;
    using NotifiedConsumer::UnregisterAll;

    void ActionStateChanged(const ActionStateInfo& source, int value) override
    {
        events.emplace_back(source, value);
        const auto action = onChange; // a copy, because the consumer may be destroyed in it
        if (action) action(source, value);
    }

    void ActionNotification(ActionType type, int action, int param) override
    {
        notifications.push_back(State(type, action, param));
    }

    std::vector<Event> events;
    std::vector<ActionStateInfo> notifications;
    std::function<void(const ActionStateInfo&, int)> onChange;
};
