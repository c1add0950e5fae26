#include "environment/ProfileSettings.h"
#include "status/OneInstance.h"
#include "status/SensorDisplay.h"
#include "text/TextView.h"

#include <base/SlimLock.h>
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
