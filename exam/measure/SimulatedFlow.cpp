#include "measure/SimulatedFlow.h"

#include <Utils_Statics/CDopplerScaling.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace exam {

namespace {

constexpr int bins = 256;
constexpr int columnsPerBeat = 180;
constexpr int traceCount = 4;

// The velocity over one beat as a share of the span above the baseline. A steep systolic peak comes
// before a slow diastolic decay.
double Pulse(double phase)
{
    const double systole = std::exp(-std::pow((phase - 0.18) / 0.09, 2));
    const double diastole = 0.22 + 0.08 * std::sin(2 * std::numbers::pi * phase);
    return 0.75 * systole + diastole;
}

unsigned char Bin(double share)
{
    return static_cast<unsigned char>(
        std::clamp(std::lround(bins / 2.0 + share * bins / 2), 0L, bins - 1L));
}

} // namespace

SimulatedFlow::SimulatedFlow(CSize plot)
{
    CDopplerScaling::SetPWPRP(250);
    CDopplerScaling::SetPWFreq(2500000);
    CDopplerScaling::SetPWFFT(bins);
    CDopplerScaling::SetPWVesselAngle(0);
    CDopplerScaling::SetVecDopScaleFactor(1.0);
    CDopplerScaling::SetBaselineStartPos(0.0);
    CDopplerScaling::SetPWDisplayHeight(plot.cy);
    const int count = std::max<int>(plot.cx, 0);
    m_bins.resize(static_cast<std::size_t>(count) * traceCount, Bin(0));
    spectralTraceData view = Traces();
    for (int x = 0; x < count; ++x) {
        const double share = Pulse(static_cast<double>(x % columnsPerBeat) / columnsPerBeat);
        view.getDataSet(eTraceEnvelopeForward)[x] = Bin(share * 0.9);
        view.getDataSet(eTraceMeanForward)[x] = Bin(share * 0.6);
    }
}

spectralTraceData SimulatedFlow::Traces()
{
    spectralTraceData view;
    view.setData(m_bins.data(), static_cast<int>(m_bins.size()), traceCount);
    return view;
}

} // namespace exam
