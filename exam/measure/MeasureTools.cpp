#include "measure/MeasureTools.h"

#include "base/Palette.h"

#include <base/GdiHandles.h>

namespace exam {

MeasureTools::MeasureTools(const ImageView& view, const CRect& area)
    : m_view(view), m_area(area), m_distance(view, area.TopLeft(), 1, std::vector<CPoint>(2)),
      m_angle(view, area.TopLeft(), 2, std::vector<CPoint>(3)),
      m_region(view, area.TopLeft(), 3, std::vector<CPoint>(2))
{
    MouseCapture::Initialize(m_area, InputPointer);
}

void MeasureTools::Reset()
{
    const CRect imaged = m_view.ImagedRect();
    const auto at = [&imaged](int x, int y) {
        return imaged.TopLeft() + CPoint(imaged.Width() * x / 100, imaged.Height() * y / 100);
    };
    m_distance.SetPoints({at(42, 40), at(58, 40)});
    m_angle.SetPoints({at(36, 50), at(42, 66), at(52, 52)});
    m_region.SetPoints({at(40, 60), at(62, 76)});
}

void MeasureTools::SetInput(InputType input)
{
    MouseCapture::Unlock();
    MouseCapture::Initialize(m_area, input);
}

void MeasureTools::Draw(CDC& dc) const
{
    for (const ImageTool* const tool : All()) {
        if (!tool->IsVisible()) continue;
        CPen pen(PS_SOLID, 1, palette::accent);
        const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
        tool->Draw(dc);
    }
}

} // namespace exam
