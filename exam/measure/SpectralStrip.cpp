#include "measure/SpectralStrip.h"

#include "base/Palette.h"

#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/GetStr.h>

#include <cmath>

namespace exam {

namespace {

constexpr int scaleWidth = 82;
constexpr double metresPerTick = 0.25;

// Draws one trace, a byte a column, from the left of the area.
void DrawTrace(CDC& dc, const CRect& plot, const unsigned char* trace, int length, COLORREF colour)
{
    if (!trace) return;
    CPen pen(PS_SOLID, 1, colour);
    CPen* const old = dc.SelectObject(&pen);
    for (int x = 0; x < length && x < plot.Width(); ++x) {
        const int y = plot.bottom -
                      static_cast<int>(std::lround(CDopplerScaling::GetPixelBaseline(trace[x])));
        x == 0 ? static_cast<void>(dc.MoveTo(plot.left, y))
               : static_cast<void>(dc.LineTo(plot.left + x, y));
    }
    dc.SelectObject(old);
}

void DrawVelocityTick(CDC& dc, const CRect& plot, int baseline, double velocity, double perPixel)
{
    const int y = baseline - static_cast<int>(std::lround(velocity / perPixel));
    if (y < plot.top + 8 || y > plot.bottom - 8) return;
    dc.MoveTo(plot.right, y);
    dc.LineTo(plot.right + 6, y);
    CRect box(plot.right + 10, y - 8, plot.right + scaleWidth, y + 8);
    dc.DrawText(GetStr("exam.value.velocity", velocity), &box,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawScale(CDC& dc, const CRect& plot, int baseline)
{
    CPen pen(PS_SOLID, 1, palette::scale);
    CPen* const old = dc.SelectObject(&pen);
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);
    dc.MoveTo(plot.left, baseline);
    dc.LineTo(plot.right, baseline);
    if (const double perPixel = CDopplerScaling::GetVelPerPixel(); perPixel > 0)
        for (int tick = -8; tick <= 8; ++tick)
            DrawVelocityTick(dc, plot, baseline, tick * metresPerTick, perPixel);
    dc.SelectObject(old);
}

} // namespace

void DrawSpectralStrip(CDC& dc, const CRect& area, spectralTraceData& data)
{
    dc.FillSolidRect(&area, palette::background);
    CRect plot = area;
    plot.right -= scaleWidth;
    CDopplerScaling::SetPWDisplayHeight(plot.Height());
    const int baseline =
        plot.bottom - static_cast<int>(std::lround(CDopplerScaling::GetPixelBaseline(
                          static_cast<int>(CDopplerScaling::GetPWFFT() / 2))));
    DrawScale(dc, plot, baseline);
    DrawTrace(dc, plot, data.getDataSet(eTraceMeanForward), data.getSetSize(), palette::label);
    DrawTrace(dc, plot, data.getDataSet(eTraceEnvelopeForward), data.getSetSize(), palette::accent);
    CRect caption(area.left + 16, area.bottom - 28, area.right, area.bottom - 6);
    dc.SetTextColor(palette::label);
    dc.DrawText(GetStr("exam.doppler.simulated"), &caption,
                DT_LEFT | DT_TOP | DT_SINGLELINE | DT_NOPREFIX);
}

} // namespace exam
