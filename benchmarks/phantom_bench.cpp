// This compares frames of the phantom with the time between two frames, and with the plain form
// that makes the echoes of all that is at rest anew.

#include "phantom/Receiver.h"
#include "RatioReporter.h"

#include <phantom/Phantom.h>

#include <string>

namespace {

using namespace simulation;

constexpr double framePeriod = 1.0 / 30;
constexpr double columnPeriod = 1.0 / 100;

void Frame(benchmark::State& state, ProbeShape probe)
{
    const Phantom phantom(DefaultSettings(probe));
    double time = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(phantom.Frame(time += framePeriod));
}

void FramePlain(benchmark::State& state, ProbeShape probe)
{
    const PhantomSettings settings = DefaultSettings(probe);
    const Patient patient(settings);
    const Receiver receiver(settings, patient);
    double time = 0;
    for (auto _ : state) {
        EchoField field(settings.acquisition.lines, settings.acquisition.samples);
        for (const Echo& echo : patient.RestingEchoes())
            field.Add(echo, patient.Spread());
        for (const Echo& echo : patient.MovingEchoes(time += framePeriod))
            field.Add(echo, patient.Spread());
        benchmark::DoNotOptimize(receiver.Develop(field, time));
    }
}

void Column(benchmark::State& state, ProbeShape probe)
{
    const Phantom phantom(DefaultSettings(probe));
    const DopplerGate gate = phantom.DefaultGate();
    double time = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(phantom.Doppler(gate, time += columnPeriod, 1, 100));
}

// The time that there is, told as if it had been measured.
void Period(benchmark::State& state, double seconds)
{
    for (auto _ : state)
        state.SetIterationTime(seconds);
}

struct Probe
{
    const char* name;
    ProbeShape shape;
};

constexpr Probe probes[] = {{"/curved", ProbeShape::curved},
                            {"/linear", ProbeShape::linear},
                            {"/phased", ProbeShape::phased}};

void Register()
{
    for (const Probe& probe : probes) {
        const std::string name = probe.name;
        benchmark::RegisterBenchmark(("frame" + name).c_str(), Frame, probe.shape);
        benchmark::RegisterBenchmark(("frame: plain" + name).c_str(), FramePlain, probe.shape);
        benchmark::RegisterBenchmark(("spectrum" + name).c_str(), Column, probe.shape);
    }
    benchmark::RegisterBenchmark("30 frames a second", Period, framePeriod)->UseManualTime();
    benchmark::RegisterBenchmark("100 spectra a second", Period, columnPeriod)->UseManualTime();
}

void PrintRatios(const RatioReporter& reporter)
{
    for (const Probe& probe : probes) {
        const std::string name = probe.name;
        reporter.PrintRatio("30 frames a second", "frame" + name, 2);
        reporter.PrintRatio("frame: plain" + name, "frame" + name);
        reporter.PrintRatio("100 spectra a second", "spectrum" + name, 2);
    }
}

} // namespace

int main(int argc, char** argv)
{
    Register();
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
