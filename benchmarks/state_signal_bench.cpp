// This measures one emission of the state-change signal to 1 to 1000 consumers. It is compared with
// a plain loop of virtual calls over the same kind of objects (no signal can be faster) and with
// Boost.Signals2, with its default mutex and with none. It ends with the ratios.
#include "RatioReporter.h"

#include <benchmark/benchmark.h>
#include <boost/signals2.hpp>
#include <Utils_Statics/IStateChangeConsumer.h>

#include <memory>
#include <vector>

namespace {

using Consumers = std::vector<std::unique_ptr<IStateChangeConsumer>>;

class Consumer : public IStateChangeConsumer
{
public:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override
    {
        m_seen += static_cast<unsigned int>(type) + param1 + static_cast<unsigned int>(param2);
    }

private:
    unsigned int m_seen = 0;
};

Consumers MakeConsumers(std::int64_t count)
{
    Consumers consumers;
    for (std::int64_t i = 0; i < count; ++i)
        consumers.push_back(std::make_unique<Consumer>());
    return consumers;
}

void PlainLoop(benchmark::State& state)
{
    const Consumers consumers = MakeConsumers(state.range(0));
    for (auto _ : state) {
        for (const auto& consumer : consumers)
            consumer->OnStateChange(StateChangeType{3}, 5, 7);
        benchmark::ClobberMemory();
    }
}

void StateSignal(benchmark::State& state)
{
    const Consumers consumers = MakeConsumers(state.range(0));
    for (auto _ : state) {
        IStateChangeConsumer::StateChangeSignal(StateChangeType{3}, 5, 7);
        benchmark::ClobberMemory();
    }
}

template <class Signal>
void EmitBoost(benchmark::State& state)
{
    const Consumers consumers = MakeConsumers(state.range(0));
    Signal signal;
    for (const auto& consumer : consumers)
        signal.connect(
            [receiver = consumer.get()](StateChangeType type, unsigned int param1, long param2) {
                receiver->OnStateChange(type, param1, param2);
            });
    for (auto _ : state) {
        signal(StateChangeType{3}, 5, 7);
        benchmark::ClobberMemory();
    }
}

using BoostSignal = boost::signals2::signal<void(StateChangeType, unsigned int, long)>;
using UnlockedBoostSignal = boost::signals2::signal_type<
    void(StateChangeType, unsigned int, long),
    boost::signals2::keywords::mutex_type<boost::signals2::dummy_mutex>>::type;

constexpr int counts[] = {1, 10, 100, 1000};

void Register(const char* name, void (*function)(benchmark::State&), int count)
{
    benchmark::RegisterBenchmark(name, function)->Arg(count)->Repetitions(5)->MinTime(0.05);
}

void RegisterAll()
{
    for (const int count : counts) {
        Register("PlainLoop", PlainLoop, count);
        Register("StateSignal", StateSignal, count);
        Register("BoostUnlocked", EmitBoost<UnlockedBoostSignal>, count);
        Register("Boost", EmitBoost<BoostSignal>, count);
    }
}

void PrintRatios(const RatioReporter& reporter)
{
    for (const int count : counts) {
        reporter.PrintRatioAt(count, "StateSignal", "PlainLoop", count >= 10 ? -2 : 0);
        reporter.PrintRatioAt(count, "Boost", "StateSignal", 1);
        reporter.PrintRatioAt(count, "BoostUnlocked", "StateSignal", 1);
    }
}

} // namespace

int main(int argc, char** argv)
{
    RegisterAll();
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
