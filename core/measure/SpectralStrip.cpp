#include "measure/SpectralStrip.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "image/GreyBitmap.h"
#include "study/StudyTexts.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int scaleWidth = 82;
constexpr int captionHeight = 22; // of a line of text
constexpr int captionMargin = 16;
constexpr int leastRoom = 16; // stays on both sides of the baseline
constexpr int longTick = 6;
constexpr int shortTick = 3;
constexpr int tickGap = 4;

// The steps between two ticks of velocity, in metres per second.
constexpr double tickSteps[] = {0.25, 0.5, 1, 2, 5};

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
    std::vector<CPoint> points(static_cast<std::size_t>(std::max(0, traces.getSetSize())));
    for (int i = 0; i < traces.getSetSize(); ++i)
        points[static_cast<std::size_t>(i)] = CPoint(left + i, RowOfBin(plot, trace[i]));
    CPen pen(PS_SOLID, 1, colour);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    DrawLines(dc, points);
}

int TextHeight(CDC& dc)
{
    return dc.GetTextExtent(L"0").cy;
}

// The velocity from one number of the scale to the next, so that the numbers stand apart.
double TickStep(double perPixel, int textHeight)
{
    constexpr double between = 1.2; // heights of the text
    for (const double step : tickSteps)
        if (step / perPixel >= between * textHeight) return step;
    return tickSteps[std::size(tickSteps) - 1];
}

} // namespace

void SpectralStrip::Place(const CRect& area, double scale)
{
    m_area = area;
    m_scale = scale;
    m_plot = area;
    m_plot.right -= std::min<int>(Scaled(scaleWidth), area.Width());
    m_plot.bottom -= std::min<int>(Scaled(captionHeight), area.Height());
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
    const int most = std::max(0, m_plot.Height() / 2 - Scaled(leastRoom));
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
    CRect caption(m_area.left + Scaled(captionMargin), m_plot.bottom - Scaled(captionHeight),
                  m_plot.right, m_plot.bottom);
    dc.SetTextColor(palette::label);
    dc.DrawText(GetStr(HasFlow() ? "exam.doppler.simulated" : "exam.doppler.none"), &caption,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    if (!HasFlow()) return;
    CPen pen(PS_SOLID, 1, palette::scale);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    DrawVelocities(dc);
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

void SpectralStrip::DrawVelocity(CDC& dc, double velocity, int y) const
{
    const int half = TextHeight(dc) / 2;
    if (y < m_plot.top + half || y > m_plot.bottom - half) return;
    const int end = m_plot.right + Scaled(longTick);
    DrawLines(dc, {CPoint(m_plot.right, y), CPoint(end, y)});
    CRect box(end + Scaled(tickGap), y - half, m_area.right, y + half + 1);
    dc.DrawText(GetStr("exam.value.velocity", NumberText(velocity, 2).c_str()), &box,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void SpectralStrip::DrawVelocities(CDC& dc) const
{
    const int baseline = BaselineRow();
    DrawLines(dc, {CPoint(m_plot.left, baseline), CPoint(m_plot.right, baseline)});
    const double perPixel = CDopplerScaling::GetVelPerPixel();
    if (perPixel <= 0) return;
    const double step = TickStep(perPixel, TextHeight(dc));
    const int most = static_cast<int>(2 * m_plot.Height() * perPixel / step);
    for (int tick = -most; tick <= most; ++tick)
        DrawVelocity(dc, tick * step,
                     baseline - static_cast<int>(std::lround(tick * step / perPixel)));
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
        const int tick = Scaled(isWhole ? longTick : shortTick);
        DrawLines(dc, {CPoint(x, m_plot.bottom), CPoint(x, m_plot.bottom + tick)});
        const CString text = GetStr("exam.value.seconds", half / 2);
        CRect box(x + Scaled(tickGap), m_plot.bottom + 1, m_area.right, m_area.bottom);
        box.right = box.left + dc.GetTextExtent(text).cx;
        if (isWhole && box.right < m_plot.right)
            dc.DrawText(text, &box, DT_LEFT | DT_TOP | DT_SINGLELINE | DT_NOPREFIX);
    }
}

} // namespace exam
