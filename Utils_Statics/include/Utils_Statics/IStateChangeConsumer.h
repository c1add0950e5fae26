#pragma once

#include <Utils_Statics/cPreProcessor.h>
#include <Utils_Statics/cSignal.h>
#include <Utils_Statics/cSlot.h>
#include <Utils_Statics/export.h>
#include <Utils_Statics/StateChangeType.h>

/// Base of everything that wants to learn of changes of application state. A consumer hears every
/// emission from its construction to its destruction; there is no other way to subscribe or
/// unsubscribe. The application owns its consumers. User-interface thread only.
///
/// Consumers are called in the order of their construction. During an emission this holds:
/// - A consumer that is constructed is called in the same emission.
/// - A consumer that is destroyed is not called any more.
/// - When a consumer is destroyed that was already called, or is being called, the next one is
///   passed over in this emission.
///
/// A handler that throws ends the emission and silences the signal for good.
class UTILS_STATICS_API IStateChangeConsumer
{
public:
    /// Subscribes.
    IStateChangeConsumer();

    /// Deliberately does not subscribe the copy. Only an object that was constructed without a
    /// source hears emissions; it goes on doing so when another one is assigned to it.
    IStateChangeConsumer(const IStateChangeConsumer& other);
    IStateChangeConsumer& operator=(IStateChangeConsumer& other);

    virtual ~IStateChangeConsumer();

    /// Called for every emission with the arguments of the emitter. An emission from inside it is
    /// dropped.
    virtual void OnStateChange(StateChangeType type, unsigned int param1, long param2) = 0;

    /// Calls OnStateChange of every living consumer. An emission is dropped during another one, and
    /// when the signal's minimum interval since the last attempt has not passed. An exception of a
    /// consumer passes through.
    static void StateChangeSignal(StateChangeType type, unsigned int param1, long param2);

protected:
    /// A consumer's connection to the signal.
    using Slot = cSlot<IStateChangeConsumer, void, StateChangeType, unsigned int, long,
                       cPreProcessor::unusable*, cPreProcessor::unusable*>;
    /// The signal, for which OnStateChange is the usual method.
    using Signal = cSignal<void, StateChangeType, unsigned int, long, cPreProcessor::unusable*,
                           cPreProcessor::unusable*, &IStateChangeConsumer::OnStateChange>;

    /// The signal of the whole process, built and destroyed with the library.
    static Signal m_onStateChangeSignal;

private:
    Slot m_slot;
};
