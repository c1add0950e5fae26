#pragma once

#include <Utils_Statics/StateChangeType.h>
#include <Utils_Statics/cPreProcessor.h>
#include <Utils_Statics/cSignal.h>
#include <Utils_Statics/cSlot.h>
#include <Utils_Statics/export.h>

/// Base of everything that wants to learn of changes of application state. A consumer hears every
/// emission from its construction until its destruction; there is no other way to subscribe or to
/// unsubscribe.
///
/// Consumers are called in the order they were constructed. A consumer constructed during an
/// emission is called in it; one destroyed during an emission (also by its own handler) makes the
/// emission pass over the consumer that followed it if it had been reached already. A handler that
/// throws ends the emission and silences the signal for good. User-interface thread only. The
/// application owns its consumers.
class UTILS_STATICS_API IStateChangeConsumer
{
public:
    /// Subscribes.
    IStateChangeConsumer();

    /// A copy is not subscribed: it hears of emissions only if it was constructed without a source
    /// and then assigned to. Deliberate.
    IStateChangeConsumer(const IStateChangeConsumer& other);
    IStateChangeConsumer& operator=(IStateChangeConsumer& other);

    virtual ~IStateChangeConsumer();

    /// Called for every emission with what the emitter passed. An emission from here is dropped.
    virtual void OnStateChange(StateChangeType type, unsigned int param1, long param2) = 0;

    /// Calls the handler of every living consumer. Dropped during another emission, and while the
    /// signal's minimum interval since the last attempt has not passed. What a handler throws comes
    /// out here.
    static void StateChangeSignal(StateChangeType type, unsigned int param1, long param2);

protected:
    using Slot = cSlot<IStateChangeConsumer, void, StateChangeType, unsigned int, long,
                       cPreProcessor::unusable*, cPreProcessor::unusable*>;
    using Signal = cSignal<void, StateChangeType, unsigned int, long, cPreProcessor::unusable*,
                           cPreProcessor::unusable*, &IStateChangeConsumer::OnStateChange>;

    /// The signal of the whole process, built and destroyed with the library.
    static Signal m_onStateChangeSignal;

private:
    Slot m_slot;
};
