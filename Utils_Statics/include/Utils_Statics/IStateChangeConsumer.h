#pragma once

#include <Utils_Statics/StateChangeType.h>
#include <Utils_Statics/cPreProcessor.h>
#include <Utils_Statics/cSignal.h>
#include <Utils_Statics/cSlot.h>
#include <Utils_Statics/export.h>

/// Base of everything that wants to learn of changes of application state. A consumer hears every
/// emission from its construction until its destruction; there is no other way to subscribe or to
/// unsubscribe. The application owns its consumers. User-interface thread only.
///
/// Consumers are called in the order of their construction. During an emission
/// - a consumer that is constructed is called in the same emission;
/// - a consumer that is destroyed is not called any more;
/// - when a consumer that was already called, or is being called, is destroyed, the next one to be
///   called is passed over in this emission.
///
/// A handler that throws ends the emission and silences the signal for good.
class UTILS_STATICS_API IStateChangeConsumer
{
public:
    /// Subscribes.
    IStateChangeConsumer();

    /// A copy is not subscribed. Deliberate: only an object that was constructed without a source
    /// hears emissions, and it goes on doing so when another one is assigned to it.
    IStateChangeConsumer(const IStateChangeConsumer& other);
    IStateChangeConsumer& operator=(IStateChangeConsumer& other);

    virtual ~IStateChangeConsumer();

    /// Called for every emission with what the emitter passed. An emission from here is dropped.
    virtual void OnStateChange(StateChangeType type, unsigned int param1, long param2) = 0;

    /// Calls the handler of every living consumer. An emission during another one is dropped, and
    /// so is one that comes before the signal's minimum interval since the last attempt has passed.
    /// What a handler throws comes out here.
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
