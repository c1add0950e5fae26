#pragma once

#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/export.h>

/// Whoever wants to hear of action states derives from this and registers for each state.
///
/// A broadcast tells the consumers that were registered when it began, in the order of their
/// registrations and on the broadcaster's thread. From inside a notification consumers may
/// register, unregister, broadcast and be destroyed, the one being told included: one that is no
/// longer registered is not told any more, one that registers meanwhile is told from the next
/// broadcast on.
///
/// Two states that follow from each other would broadcast for ever, so a broadcast within
/// notifications is dropped when it is nested more than 64 deep, or is the 10,000th below one
/// outermost broadcast.
///
/// Threads: registering and broadcasting may happen on any thread; no lock is held while a consumer
/// is told. A consumer must not be destroyed on one thread while another one is telling it.
class PRO_ACTIONS_API IActionStateConsumer
{
public:
    /// A registered state has a new value.
    virtual void ActionStateChanged(const ActionStateInfo& source, int value) = 0;

    /// An action was carried out. Only those are told who asked for it (NotifiedConsumer).
    virtual void ActionNotification(ActionType type, int action, int param) = 0;

    /// Ends the consumer's registrations.
    virtual ~IActionStateConsumer();

    /// Tells every consumer registered for the state its new value. False when the broadcast was
    /// dropped (see above). An exception out of a consumer does not keep the others from being
    /// told; the first one goes on to the caller when all were.
    static bool ActionStateSignal(const ActionStateInfo& state, int value);

    IActionStateConsumer(const IActionStateConsumer&) = delete;
    IActionStateConsumer& operator=(const IActionStateConsumer&) = delete;

protected:
    IActionStateConsumer() noexcept;

    /// From now on every broadcast of the state reaches this consumer's ActionStateChanged, once,
    /// however often it is registered for the state. Throws only for want of memory.
    void RegisterActionSignal(const ActionStateInfo& state);
};
