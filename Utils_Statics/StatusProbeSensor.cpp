#include "environment/Application.h"
#include "status/OneInstance.h"
#include "status/StatusDrawing.h"
#include "text/TextView.h"

#include <base/SlimLock.h>
#include <base/WrapArithmetic.h>
#include <qor_utils/Rounding.h>
#include <qor_utils/zelLogger.h>
#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/GetStr.h>

#include <cstdlib>
#include <mutex>
#include <new>
#include <shared_mutex>

using namespace utils_statics;

namespace {

constexpr char logSource[] = "Utils_Statics/StatusProbeSensor";
constexpr int logLevel = 4;
constexpr int firstUsableVersion = 2;

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

// The gauge is the lower half of this ellipse; pixels.
constexpr REAL ellipseHeight = 55.2f;
constexpr REAL textHeight = 13.8f;

// The colour of a heat of 0 is a pale grey blue, that of 1 pure red.
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

// Guards the stored reading, which is too large to be stored atomically.
constinit base::SlimLock s_readingLock;

// A setting in degrees Celsius. A text that is no number gives 0. Without memory to read it, the
// default holds.
double TemperatureSetting(const wchar_t* entry, const wchar_t* defaultValue)
try {
    return _wtof(ProfileText(L"Settings", entry, defaultValue));
} catch (const std::bad_alloc&) {
    return _wtof(defaultValue);
}

bool IsValid(const CStatusProbeSensor::SensorData& data)
{
    return data.isSensorSupported && data.muxVersion >= firstUsableVersion;
}

// The temperature's share of the way from `start` to `end`, 0 to 1; 0 when that is no number.
double Heat(double temperature, double start, double end)
{
    const double way = (temperature - start) / (end - start);
    if (way >= 1) return 1;
    return way > 0 ? way : 0;
}

// The warning that a reading deserves, in the user's language; empty for none.
std::wstring WarningText(const CStatusProbeSensor::SensorData& data, double threshold)
{
    if (!IsValid(data)) {
        zelLogger::zelLogHelper(logSource, __LINE__, logLevel)(L"sensorData invalid()\n");
        return std::wstring(View(GetStr("status.probesensor.nosensor")));
    }
    if (data.errorStatus != 0 || data.temperature > threshold) {
        zelLogger::zelLogHelper(logSource, __LINE__, logLevel)(L" hardware error status\n");
        return std::wstring(View(GetStr("status.probesensor.maxtemp")));
    }
    return {};
}

} // namespace

constinit CStatusProbeSensor::SensorData CStatusProbeSensor::m_sensorData;
constinit std::atomic<CStatusProbeSensor*> CStatusProbeSensor::m_me = nullptr;

CStatusProbeSensor::CStatusProbeSensor()
    : m_threshold(getTemperatureThreshold()),
      m_warnStart(TemperatureSetting(L"TeeTempWarnStart", L"37.0"))
{
}

CStatusProbeSensor::~CStatusProbeSensor() = default;

CStatusProbeSensor* CStatusProbeSensor::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusProbeSensor; });
}

void CStatusProbeSensor::setState(const SensorData& data)
{
    {
        const std::lock_guard lock(s_readingLock);
        if (data == m_sensorData) return;
        m_sensorData = data;
    }
    getInstance()->issueUpdate();
}

CStatusProbeSensor::SensorData CStatusProbeSensor::getState()
{
    const std::shared_lock lock(s_readingLock);
    return m_sensorData;
}

double CStatusProbeSensor::getTemperatureThreshold()
{
    return TemperatureSetting(L"TeeTempThresh", L"39.8");
}

void CStatusProbeSensor::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusProbeSensor::updateVisibleState() {}

bool CStatusProbeSensor::isVisible() const
{
    return getState().isSensorSupported;
}

int CStatusProbeSensor::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    try {
        const SensorData data = getState();
        zelLogger::zelLogHelper(logSource, __LINE__, logLevel)(
            L"isSensorSupported %d errorStatus %d muxVersion %d\n", data.isSensorSupported,
            data.errorStatus, data.muxVersion);
        SensorDisplay display(rect, graphics);
        int used = 0;
        if (IsValid(data)) {
            display.DrawTemperature(data.temperature,
                                    Heat(data.temperature, m_warnStart, m_threshold));
            used = SensorDisplay::temperatureWidth;
            zelLogger::zelLogHelper(logSource, __LINE__, logLevel)(L"sensorData valid()\n");
        }
        const std::wstring warning = WarningText(data, m_threshold);
        if (!warning.empty()) {
            display.DrawWarning(warning, used);
            used = rect.right;
        }
        if (IsValid(data) && used < rect.right) {
            display.DrawGauge(data.angle, used);
            used += SensorDisplay::gaugeWidth;
        }
        return used;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}
