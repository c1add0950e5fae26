// The state-change signal: whoever wants to learn of changes derives from IStateChangeConsumer.
// The emitter knows none of them, and none of them subscribes or unsubscribes by hand.
#include <Utils_Statics/IStateChangeConsumer.h>

#include <cstdio>

// The application completes the library's opaque enumeration.
enum StateChangeType : std::int32_t
{
    stateFrozen = 1,
    stateDepth = 2
};

namespace {

class DepthLabel : public IStateChangeConsumer
{
    void OnStateChange(StateChangeType type, unsigned int millimetres, long) override
    {
        if (type == stateDepth) std::printf("the label shows %u mm\n", millimetres);
    }
};

class FreezeLamp : public IStateChangeConsumer
{
    void OnStateChange(StateChangeType type, unsigned int frozen, long) override
    {
        if (type == stateFrozen) std::printf("the lamp is %s\n", frozen ? "lit" : "dark");
    }
};

} // namespace

int main()
{
    const DepthLabel label;
    {
        const FreezeLamp lamp;
        IStateChangeConsumer::StateChangeSignal(stateFrozen, 1, 0);
        IStateChangeConsumer::StateChangeSignal(stateDepth, 120, 0);
    }
    IStateChangeConsumer::StateChangeSignal(stateFrozen, 0, 0); // the lamp is gone: nobody hears
    IStateChangeConsumer::StateChangeSignal(stateDepth, 80, 0);
}
