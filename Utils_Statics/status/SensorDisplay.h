#pragma once

#include "status/StatusText.h"

#include <atltypes.h>

namespace utils_statics {

// The parts of a probe sensor's display, painted into one row. `used` is the width in pixels that
// is already taken at the row's right edge.
class SensorDisplay
{
public:
    static constexpr int temperatureWidth = 54;
    static constexpr int gaugeWidth = 48;

    SensorDisplay(const CRect& rect, Gdiplus::Graphics& graphics);

    // Draws at the right edge. `heat` goes from 0 (pale) to 1 (red).
    void DrawTemperature(double temperature, double heat);
    // Draws across the rest of the row, with a soft shadow.
    void DrawWarning(const std::wstring& text, int used);
    // Draws a half disc, filled up to the angle in degrees, and the angle as a text over it.
    void DrawGauge(double angle, int used);

private:
    // A column of the row, `width` wide, that ends `used` before its right edge.
    Gdiplus::RectF Column(int used, int width) const;
    void DrawHalfDisc(double angle, const Gdiplus::RectF& column);

    CRect m_rect;
    Gdiplus::Graphics& m_graphics;
    StatusText m_text;
};

} // namespace utils_statics
