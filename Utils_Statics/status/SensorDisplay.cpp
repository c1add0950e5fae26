#include "status/SensorDisplay.h"

#include "text/TextView.h"

#include <base/WrapArithmetic.h>
#include <qor_utils/Rounding.h>

namespace utils_statics {

namespace {

using Gdiplus::REAL;

constexpr REAL fontSize = 11; // points
constexpr wchar_t degreeSign = 0xB0;

constexpr Gdiplus::ARGB shadowColour = 0x64FF0000;
constexpr Gdiplus::ARGB warningColour = 0xFFFF0000;
constexpr Gdiplus::ARGB angleColour = 0xFFE7EBF6;
constexpr Gdiplus::ARGB discColour = 0x64C8C8C8;
constexpr Gdiplus::ARGB outlineColour = 0xFFB4B496;
constexpr REAL outlineWidth = 2;
constexpr REAL shadowOffset = 2;

// In pixels; the gauge is the lower half of this ellipse.
constexpr REAL ellipseHeight = 55.2f;
constexpr REAL textHeight = 13.8f;

// From a pale grey blue to pure red.
Gdiplus::ARGB HeatColour(double heat)
{
    const double coolness = 1 - heat;
    return Gdiplus::Color::MakeARGB(255, 231, static_cast<BYTE>(coolness * 235),
                                    static_cast<BYTE>(coolness * 246));
}

template <class... Arguments>
std::wstring Formatted(const wchar_t* format, Arguments... arguments)
{
    CString text;
    text.Format(format, arguments...);
    return std::wstring(View(text));
}

} // namespace

SensorDisplay::SensorDisplay(const CRect& rect, Gdiplus::Graphics& graphics)
    : m_rect(rect), m_graphics(graphics),
      m_text(fontSize, Gdiplus::FontStyleBold, Gdiplus::StringAlignmentCenter)
{
}

void SensorDisplay::DrawTemperature(double temperature, double heat)
{
    m_text.Draw(m_graphics, Formatted(L"%0.1f%cC", temperature, degreeSign),
                Column(0, temperatureWidth), HeatColour(heat));
}

void SensorDisplay::DrawWarning(const std::wstring& text, int used)
{
    const Gdiplus::RectF layout =
        Column(used, base::wrap::Subtract(m_rect.right, used)); // the column begins at x = 0
    Gdiplus::RectF shadow = layout;
    shadow.Offset(shadowOffset, shadowOffset);
    m_text.Draw(m_graphics, text, shadow, shadowColour);
    m_text.Draw(m_graphics, text, layout, warningColour);
}

void SensorDisplay::DrawGauge(double angle, int used)
{
    const Gdiplus::RectF column = Column(used, gaugeWidth);
    m_text.Draw(m_graphics, Formatted(L"%d%c", qor_utils::round(angle), degreeSign), column,
                angleColour);
    DrawHalfDisc(angle, column);
}

// Angles go clockwise from the right, so the disc fills from its left end.
void SensorDisplay::DrawHalfDisc(double angle, const Gdiplus::RectF& column)
{
    const REAL raisedBy = (column.Height - textHeight) * 0.5f;
    const Gdiplus::RectF ellipse(column.X, column.Y - raisedBy, column.Width, ellipseHeight);
    const Gdiplus::SolidBrush brush{Gdiplus::Color(discColour)};
    const Gdiplus::Pen pen(Gdiplus::Color(outlineColour), outlineWidth);
    m_graphics.FillPie(&brush, ellipse, static_cast<REAL>(180 - angle), static_cast<REAL>(angle));
    m_graphics.DrawArc(&pen, ellipse, 0, 180);
}

Gdiplus::RectF SensorDisplay::Column(int used, int width) const
{
    const int left = base::wrap::Subtract(base::wrap::Subtract(m_rect.right, used), width);
    return Gdiplus::RectF(static_cast<REAL>(left), static_cast<REAL>(m_rect.top),
                          static_cast<REAL>(width), static_cast<REAL>(m_rect.Height()));
}

} // namespace utils_statics
