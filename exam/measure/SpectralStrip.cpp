#include "measure/SpectralStrip.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "image/GreyBitmap.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace exam {

namespace {

constexpr int scaleWidth = 82;
constexpr int captionHeight = 22; // of a line of text;
constexpr double metresPerTick = 0.25;
constexpr int leastRoom = 16; // pixels that stay on both sides of the baseline

// The row of the window in which a bin of the spectrum lies.
int RowOfBin(const CRect& plot, int bin)
{
    return plot.bottom - static_cast<int>(std::lround(CDopplerScaling::GetPixelBaseline(bin)));
}

int Baseline(const CRect& plot)
{
    return RowOfBin(plot, static_cast<int>(CDopplerScaling::GetPWFFT() / 2));
}

// Draws one trace from a column of the window on. Each byte is the bin of one column.
void DrawTrace(CDC& dc, const CRect& plot, int left, const spectralTraceData& traces,
               eTraceType type, COLORREF colour)
{
    const unsigned char* const trace = traces.getDataSet(type);
    if (!trace) return;
    std::vector<CPoint> points;
    for (int i = 0; i < traces.getSetSize(); ++i)
        points.emplace_back(left + i, RowOfBin(plot, trace[i]));
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

void DrawVelocities(CDC& dc, const CRect& plot)
{
    const int baseline = Baseline(plot);
    DrawLines(dc, {CPoint(plot.left, baseline), CPoint(plot.right, baseline)});
    if (const double perPixel = CDopplerScaling::GetVelPerPixel(); perPixel > 0)
        for (int tick = -16; tick <= 16; ++tick)
            DrawVelocityTick(dc, plot, baseline, tick * metresPerTick, perPixel);
}

} // namespace

void SpectralStrip::Place(const CRect& area)
{
    m_area = area;
    m_plot = area;
    m_plot.right -= std::min<int>(scaleWidth, area.Width());
    m_plot.bottom -= std::min<int>(captionHeight, area.Height());
    MoveBaseline(0);
}

void SpectralStrip::Show(FlowSpectrum flow)
{
    m_flow = std::move(flow);
    m_traces.setData(m_flow.traces.data(), static_cast<int>(m_flow.traces.size()),
                     FlowSpectrum::traceCount);
    CDopplerScaling::SetPWPRP(m_flow.scale.pulsePeriod);
    CDopplerScaling::SetPWFreq(m_flow.scale.frequency);
    CDopplerScaling::SetPWFFT(m_flow.scale.bins);
    CDopplerScaling::SetPWVesselAngle(m_flow.scale.vesselAngle);
    CDopplerScaling::SetVecDopScaleFactor(1.0);
    MoveBaseline(0);
}

void SpectralStrip::MoveBaseline(int pixels)
{
    const int most = std::max(0, m_plot.Height() / 2 - leastRoom);
    m_baseline = std::clamp(m_baseline + pixels, -most, most);
    CDopplerScaling::SetPWDisplayHeight(m_plot.Height());
    CDopplerScaling::SetBaselineStartPos(m_baseline);
}

int SpectralStrip::BaselineRow() const
{
    return Baseline(m_plot);
}

double SpectralStrip::TimeAt(double x) const
{
    const double column = m_flow.firstColumn + m_flow.columns - (m_plot.right - x);
    return column / m_flow.columnsPerSecond;
}

double SpectralStrip::ColumnOf(double seconds) const
{
    const double column = seconds * m_flow.columnsPerSecond;
    return m_plot.right - (m_flow.firstColumn + m_flow.columns - column);
}

void SpectralStrip::Draw(CDC& dc) const
{
    if (m_area.IsRectEmpty()) return;
    dc.FillSolidRect(&m_area, palette::background);
    dc.SetBkMode(TRANSPARENT);
    if (HasFlow()) DrawSpectra(dc);
    CRect caption(m_area.left + 16, m_plot.bottom - captionHeight, m_plot.right, m_plot.bottom);
    dc.SetTextColor(palette::label);
    dc.DrawText(GetStr(HasFlow() ? "exam.doppler.simulated" : "exam.doppler.none"), &caption,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    if (!HasFlow()) return;
    CPen pen(PS_SOLID, 1, palette::scale);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    DrawVelocities(dc, m_plot);
    DrawTimes(dc);
    const int left = m_plot.right - m_flow.columns;
    DrawTrace(dc, m_plot, left, m_traces, eTraceMeanForward, palette::label);
    DrawTrace(dc, m_plot, left, m_traces, eTraceEnvelopeForward, palette::accent);
}

// Draws the spectra as a grey picture, one row of the plot after the other.
void SpectralStrip::DrawSpectra(CDC& dc) const
{
    const int height = m_plot.Height();
    const int width = m_flow.columns;
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height));
    for (int row = 0; row < height; ++row) {
        const int above = height - row - m_baseline; // pixels above the lower end of the spectrum
        const int bin = above * m_flow.scale.bins / std::max(1, height);
        if (bin < 0 || bin >= m_flow.scale.bins) continue;
        for (int column = 0; column < width; ++column)
            pixels[static_cast<std::size_t>(row * width + column)] =
                m_flow.levels[static_cast<std::size_t>(column * m_flow.scale.bins + bin)];
    }
    PaintGrey(dc, CPoint(m_plot.right - m_flow.columns, m_plot.top), CSize(width, height),
              pixels.data());
}

// Draws the time axis below the spectra: a tick every half second, those of whole seconds numbered.
void SpectralStrip::DrawTimes(CDC& dc) const
{
    DrawLines(dc, {CPoint(m_plot.left, m_plot.bottom), CPoint(m_plot.right, m_plot.bottom)});
    const int last = static_cast<int>(std::floor(TimeAt(m_plot.right) * 2));
    for (int half = last; half >= 0; --half) {
        const int x = static_cast<int>(std::lround(ColumnOf(half / 2.0)));
        if (x < m_plot.left || x < m_plot.right - m_flow.columns) break;
        const bool isWhole = half % 2 == 0;
        DrawLines(dc, {CPoint(x, m_plot.bottom), CPoint(x, m_plot.bottom + (isWhole ? 6 : 3))});
        CRect box(x + 3, m_plot.bottom + 2, x + 60, m_area.bottom);
        if (isWhole && box.right < m_plot.right)
            dc.DrawText(GetStr("exam.value.seconds", half / 2), &box,
                        DT_LEFT | DT_TOP | DT_SINGLELINE | DT_NOPREFIX);
    }
}

} // namespace exam
