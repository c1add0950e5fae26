#include "measure/SpectralStrip.h"

#include "base/Painting.h"
#include "base/Palette.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

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

constexpr int scaleWidth = 82;
constexpr double metresPerTick = 0.25;

// The row of the window in which a bin of the spectrum lies.
int RowOfBin(const CRect& plot, int bin)
{
    return plot.bottom - static_cast<int>(std::lround(CDopplerScaling::GetPixelBaseline(bin)));
}

// Draws one trace from the left of the window. Each byte is the bin of one column.
void DrawTrace(CDC& dc, const CRect& plot, const unsigned char* trace, int length, COLORREF colour)
{
    if (!trace) return;
    std::vector<CPoint> points;
    for (int x = 0; x < length && x < plot.Width(); ++x)
        points.emplace_back(plot.left + x, RowOfBin(plot, trace[x]));
    CPen pen(PS_SOLID, 1, colour);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    DrawLines(dc, points);
}

void DrawVelocityTick(CDC& dc, const CRect& plot, int baseline, double velocity, double perPixel)
{
    const int y = baseline - static_cast<int>(std::lround(velocity / perPixel));
    if (y < plot.top + 8 || y > plot.bottom - 8) return;
    DrawLines(dc, {CPoint(plot.right, y), CPoint(plot.right + 6, y)});
    CRect box(plot.right + 10, y - 8, plot.right + scaleWidth, y + 8);
    dc.DrawText(GetStr("exam.value.velocity", velocity), &box,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawScale(CDC& dc, const CRect& plot, int baseline)
{
    CPen pen(PS_SOLID, 1, palette::scale);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);
    DrawLines(dc, {CPoint(plot.left, baseline), CPoint(plot.right, baseline)});
    if (const double perPixel = CDopplerScaling::GetVelPerPixel(); perPixel > 0)
        for (int tick = -8; tick <= 8; ++tick)
            DrawVelocityTick(dc, plot, baseline, tick * metresPerTick, perPixel);
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
    m_traces.setData(m_bins.data(), static_cast<int>(m_bins.size()), traceCount);
    for (int x = 0; x < count; ++x) {
        const double share = Pulse(static_cast<double>(x % columnsPerBeat) / columnsPerBeat);
        m_traces.getDataSet(eTraceEnvelopeForward)[x] = Bin(share * 0.9);
        m_traces.getDataSet(eTraceMeanForward)[x] = Bin(share * 0.6);
    }
}

void DrawSpectralStrip(CDC& dc, const CRect& area, const spectralTraceData& data)
{
    dc.FillSolidRect(&area, palette::background);
    CRect plot = area;
    plot.right -= scaleWidth;
    const int baseline = RowOfBin(plot, static_cast<int>(CDopplerScaling::GetPWFFT() / 2));
    DrawScale(dc, plot, baseline);
    DrawTrace(dc, plot, data.getDataSet(eTraceMeanForward), data.getSetSize(), palette::label);
    DrawTrace(dc, plot, data.getDataSet(eTraceEnvelopeForward), data.getSetSize(), palette::accent);
    CRect caption(area.left + 16, area.bottom - 28, area.right, area.bottom - 6);
    dc.SetTextColor(palette::label);
    dc.DrawText(GetStr("exam.doppler.simulated"), &caption,
                DT_LEFT | DT_TOP | DT_SINGLELINE | DT_NOPREFIX);
}

} // namespace exam
