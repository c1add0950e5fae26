#pragma once

#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/ActionType.h>
#include <pro_actions/export.h>
#include <pro_actions/IActionStateConsumer.h>

namespace pro_actions {

/// Tells every consumer registered for notifications that an action was carried out; otherwise like
/// IActionStateConsumer::ActionStateSignal.
PRO_ACTIONS_API bool SignalActionNotification(ActionType type, int action, int param);

/// A consumer that is told of actions as well as of states, and that can end its registrations
/// before its own end. IActionStateConsumer has the rules on threads.
class PRO_ACTIONS_API NotifiedConsumer : public IActionStateConsumer
{
public:
    ~NotifiedConsumer() override;

protected:
    NotifiedConsumer() noexcept;

    /// Ends the registration for a state; does nothing when there is none.
    void UnregisterActionSignal(const ActionStateInfo& state) noexcept;

    /// From now on every notification reaches this consumer's ActionNotification, once, however
    /// often it is registered. Throws only when memory is short.
    void RegisterActionNotification();
    /// Ends the registration for notifications; does nothing when there is none.
    void UnregisterActionNotification() noexcept;

    /// Ends all registrations of this consumer.
    void UnregisterAll() noexcept;
};

} // namespace pro_actions
