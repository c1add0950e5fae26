#include "measure/SpectralStrip.h"

#include "base/Palette.h"
#include "base/Strokes.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/GetStr.h>

#include <cmath>
#include <vector>

namespace exam {

namespace {

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

void DrawSpectralStrip(CDC& dc, const CRect& area, spectralTraceData& data)
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
