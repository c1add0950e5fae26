#pragma once

#include <Utils_Statics/spectralTraceData.h>

#include <afxwin.h>

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
    SimulatedFlow(const SimulatedFlow&) = delete;
    SimulatedFlow& operator=(const SimulatedFlow&) = delete;

    /// A view of the four traces, valid while this object lives.
    const spectralTraceData& Traces() const { return m_traces; }

private:
    std::vector<unsigned char> m_bins;
    spectralTraceData m_traces;
};

/// Draws a spectral Doppler strip: the velocity scale, the baseline and the traces of `data`, whose
/// bytes are spectral bins. The scale comes from CDopplerScaling, whose display height must be the
/// height of `area`.
void DrawSpectralStrip(CDC& dc, const CRect& area, const spectralTraceData& data);

} // namespace exam
