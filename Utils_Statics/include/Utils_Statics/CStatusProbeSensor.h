#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IStatusItem.h>

#include <atomic>
#include <cstdint>

/// The display of a probe's sensor. It shows the temperature of the probe's tip, in a colour from
/// pale to red as it nears the threshold, and the probe's angle on a gauge. A warning takes the
/// place of the gauge when the probe reports an error or is too hot, and the place of both when
/// there is no usable sensor. The warning fills the rest of the row.
///
/// The temperatures in the settings are read once, when the object is made. One object per process,
/// made on first use. Until CStatusFactory::destroyInstance the static members may be called on any
/// thread.
class UTILS_STATICS_API CStatusProbeSensor : public IStatusItem
{
public:
    /// A reading. It is valid when there is a sensor whose interface has version 2 or later.
    struct SensorData
    {
        bool isSensorSupported = false; ///< whether the probe has a sensor
        double temperature = -1.0;      ///< degrees Celsius
        double angle = -1.0;            ///< degrees, 0 to 180
        std::uint8_t errorStatus = 0;   ///< 0: no error of the hardware
        std::int32_t muxVersion = 0;    ///< version of the sensor's interface

        /// Compares exactly; a NaN equals nothing.
        friend bool operator==(const SensorData&, const SensorData&) = default;
    };

    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusProbeSensor* getInstance();

    /// Stores a reading and asks for a repaint; does neither when it equals the stored one.
    static void setState(const SensorData& data);
    /// The reading that was stored last.
    static SensorData getState();

    /// The temperature above which the item warns, in degrees Celsius, read on each call from
    /// "TeeTempThresh" of the profile section "Settings". 39.8 when nothing is set, 0 for a text
    /// that is no number.
    static double getTemperatureThreshold();

    ~CStatusProbeSensor() override;

protected:
    void issueUpdate() const override;
    /// Does nothing, because there is no setting.
    void updateVisibleState() override;
    /// True when there is a sensor, usable or not.
    bool isVisible() const override;
    /// Draws even when the item is not visible.
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusProbeSensor();

    double m_threshold; // degrees Celsius
    double m_warnStart; // the text begins to redden here, degrees Celsius

    static SensorData m_sensorData;
    static std::atomic<CStatusProbeSensor*> m_me;
};
