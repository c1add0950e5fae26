#pragma once

#include <Utils_Statics/spectralTraceData.h>

#include <atltypes.h>

#include <vector>

namespace exam {

/// Spectral traces of a simulated pulsating flow, because the sample study has no recorded one. The
/// traces are the envelope and the mean of the velocities towards the probe and away from it, as
/// bins of a spectrum. Nothing flows away from the probe.
class SimulatedFlow
{
public:
    /// Fills the traces, one value for each column of `plot`, and sets the acquisition parameters
    /// of CDopplerScaling that belong to them. The height of `plot` becomes the display height.
    explicit SimulatedFlow(CSize plot);

    /// A view of the four traces, valid while this object lives.
    spectralTraceData Traces();

private:
    std::vector<unsigned char> m_bins;
};

} // namespace exam
