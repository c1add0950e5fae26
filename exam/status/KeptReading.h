#pragma once

#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/IStatusItem.h>

#include <afxwin.h>

#include <gdiplus.h>

#include <memory>

namespace exam {

/// The drawing of the probe sensor's item. The item logs each drawing, and the row is painted for
/// every item that changes, so the picture is kept until there is another reading or another room.
class KeptReading
{
public:
    /// Draws like the item, at the right edge of `area`. The result is the width that it takes.
    int Draw(const IStatusItem& item, const CRect& area, Gdiplus::Graphics& graphics);

    /// Lets the item draw itself anew, for texts in another language.
    void Forget() { m_picture.reset(); }

private:
    CStatusProbeSensor::SensorData m_reading;
    CRect m_area{};
    std::unique_ptr<Gdiplus::Bitmap> m_picture;
    int m_width = 0;
};

} // namespace exam
