#pragma once

#include <Utils_Statics/spectralTraceData.h>

#include <atltypes.h>

#include <vector>

namespace exam {

// Spectral traces of a simulated pulsating flow, for want of a recorded one: the envelope and the
// mean of the velocities towards the probe and away from it, as bins of a spectrum. Nothing flows
// away from the probe. Building it also sets the acquisition parameters of CDopplerScaling that
// belong to it.
class SimulatedFlow
{
public:
    // `plot`: a column a value of the traces, and the pixels over which the spectrum is spread.
    explicit SimulatedFlow(CSize plot);

    // A view of the four traces. Valid while this object lives.
    spectralTraceData Traces();

private:
    std::vector<unsigned char> m_bins;
};

} // namespace exam
