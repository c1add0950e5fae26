#pragma once

#include <Utils_Statics/spectralTraceData.h>

#include <vector>

namespace exam
{

// Spectral traces of a simulated pulsating flow, for want of a recorded one: the peak and the mean velocity as bins of
// a spectrum. Building it also sets the acquisition parameters of CDopplerScaling that belong to it.
class SimulatedFlow
{
public:
    explicit SimulatedFlow(int columns);

    // A view of the traces: set 0 the peak, set 1 the mean. Valid while this object lives.
    spectralTraceData traces();

private:
    std::vector<unsigned char> m_bins;
};

} // namespace exam
