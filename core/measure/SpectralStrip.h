#pragma once

#include "image/FlowSpectrum.h"

#include <Utils_Statics/spectralTraceData.h>

#include <afxwin.h>

namespace exam {

/// The spectral Doppler strip: the spectra of a flow against time, the newest at the right end, a
/// pixel for each. Its scale is that of CDopplerScaling, whose parameters it sets.
class SpectralStrip
{
public:
    SpectralStrip() = default;
    SpectralStrip(const SpectralStrip&) = delete;
    SpectralStrip& operator=(const SpectralStrip&) = delete;

    /// Puts the strip at a place in the client area. It is hidden in an empty one. `scale`: the
    /// pixels that stand for one pixel at 96 dpi.
    void Place(const CRect& area, double scale = 1);

    /// Shows the end of a flow, or nothing for one without columns.
    void Show(FlowSpectrum flow);

    /// Moves the baseline by pixels, upwards when positive, as far as a part of the spectrum stays
    /// on both sides of it.
    void MoveBaseline(int pixels);
    int BaselineRow() const;

    /// The place of the spectra in the client area; empty while the strip is hidden.
    CRect Plot() const { return m_plot; }

    /// The number of columns that the plot has room for.
    int Room() const { return m_plot.Width(); }

    bool HasFlow() const { return m_flow.columns > 0; }
    const FlowSpectrum& Flow() const { return m_flow; }

    /// A view of the four traces, valid until another flow is shown.
    const spectralTraceData& Traces() const { return m_traces; }

    /// The time at a client pixel, and the pixel of a time in seconds.
    double TimeAt(double x) const;
    double ColumnOf(double seconds) const;

    /// Draws the strip with its scales in client pixels.
    void Draw(CDC& dc) const;

private:
    int Scaled(int pixels) const { return static_cast<int>(pixels * m_scale + 0.5); }
    void DrawSpectra(CDC& dc) const;
    void DrawVelocities(CDC& dc) const;
    void DrawVelocity(CDC& dc, double velocity, int y) const;
    void DrawTimes(CDC& dc) const;

    CRect m_area;
    double m_scale = 1;
    CRect m_plot;
    FlowSpectrum m_flow;
    spectralTraceData m_traces;
    int m_baseline = 0; // pixels above its own place
};

} // namespace exam
