#include "status/KeptReading.h"

#include "base/Palette.h"

namespace exam {

int KeptReading::Draw(const IStatusItem& item, const CRect& area, Gdiplus::Graphics& graphics)
{
    const CStatusProbeSensor::SensorData reading = CStatusProbeSensor::getState();
    if (!m_picture || !(reading == m_reading) || area != m_area) {
        m_picture =
            std::make_unique<Gdiplus::Bitmap>(area.Width(), area.Height(), PixelFormat32bppRGB);
        Gdiplus::Graphics picture(m_picture.get());
        Gdiplus::Color background;
        background.SetFromCOLORREF(palette::header);
        picture.Clear(background);
        m_width = item.drawIcon(CRect(CPoint(0, 0), area.Size()), picture);
        m_reading = reading;
        m_area = area;
    }
    graphics.DrawImage(m_picture.get(), area.left, area.top, area.Width(), area.Height());
    return m_width;
}

} // namespace exam
