#pragma once

#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/export.h>

/// The base of classes that want to be told of action states. A consumer registers for each state.
///
/// A broadcast tells the consumers that were registered when it began, in the order of their
/// registrations and on the broadcaster's thread. From inside a notification consumers may
/// register, unregister, broadcast and be destroyed, even the one being told. A consumer that is no
/// longer registered is not told. One that registers meanwhile is told from the next broadcast on.
///
/// Two states that trigger each other would broadcast for ever. So a broadcast within notifications
/// is dropped when it is nested more than 64 deep, or is the 10,000th within one outermost
/// broadcast.
///
/// Any thread may register and broadcast. No lock is held while a consumer is told. A consumer must
/// not be destroyed on one thread while another thread is telling it.
class PRO_ACTIONS_API IActionStateConsumer
{
public:
    /// A registered state has a new value.
    virtual void ActionStateChanged(const ActionStateInfo& source, int value) = 0;

    /// An action was carried out. Only consumers registered for notifications are told
    /// (NotifiedConsumer).
    virtual void ActionNotification(ActionType type, int action, int param) = 0;

    /// Ends the consumer's registrations.
    virtual ~IActionStateConsumer();

    /// Tells every consumer registered for the state its new value. False when the broadcast was
    /// dropped (see above). A consumer's exception does not keep the others from being told.
    /// Afterwards the first one is rethrown to the caller.
    static bool ActionStateSignal(const ActionStateInfo& state, int value);

    IActionStateConsumer(const IActionStateConsumer&) = delete;
    IActionStateConsumer& operator=(const IActionStateConsumer&) = delete;

protected:
    IActionStateConsumer() noexcept;

    /// From now on every broadcast of the state reaches this consumer's ActionStateChanged, once,
    /// however often it is registered for the state. Throws only when memory is short.
    void RegisterActionSignal(const ActionStateInfo& state);
};
