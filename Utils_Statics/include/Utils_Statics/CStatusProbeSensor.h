#pragma once

#include <Utils_Statics/IStatusItem.h>
#include <Utils_Statics/export.h>

#include <atomic>
#include <cstdint>

/// The display of a probe's sensor: the temperature of its tip, from pale to red as it nears the
/// threshold, and its angle on a gauge; or instead a warning over the whole row, when there is no
/// usable sensor or the probe reports an error or is too hot.
///
/// The temperatures of the settings are read once, when the object is made. One object per process,
/// made on first use. The static members may be called on any thread, until
/// CStatusFactory::destroyInstance.
class UTILS_STATICS_API CStatusProbeSensor : public IStatusItem
{
public:
    /// A reading. It is valid when there is a sensor and its interface has version 2 or later.
    struct SensorData
    {
        bool isSensorSupported = false;
        double temperature = -1.0;    ///< degrees Celsius
        double angle = -1.0;          ///< degrees, 0 to 180
        std::uint8_t errorStatus = 0; ///< 0: no error of the hardware
        std::int32_t muxVersion = 0;  ///< version of the sensor's interface

        /// Exact; a number that is none is never equal.
        friend bool operator==(const SensorData&, const SensorData&) = default;
    };

    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusProbeSensor* getInstance();

    /// Stores a reading and asks for a repaint; does neither when the reading is the stored one.
    static void setState(const SensorData& data);
    static SensorData getState();

    /// The temperature above which the item warns, in degrees Celsius: "TeeTempThresh" of the
    /// profile section "Settings", 39.8 when nothing is set and 0 for a text that is no number. Is
    /// read on each call.
    static double getTemperatureThreshold();

    ~CStatusProbeSensor() override;

protected:
    void issueUpdate() const override;
    /// There is no setting.
    void updateVisibleState() override;
    /// Whether there is a sensor, usable or not.
    bool isVisible() const override;
    /// Draws whether the item is visible or not.
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusProbeSensor();

    double m_threshold; // degrees Celsius
    double m_warnStart; // where the text begins to redden, degrees Celsius

    static SensorData m_sensorData;
    static std::atomic<CStatusProbeSensor*> m_me;
};
