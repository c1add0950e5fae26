#include "measure/MeasureTools.h"

#include "base/Painting.h"
#include "base/Palette.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace exam {

double DistanceCaliper::Millimetres() const
{
    return Image().Millimetres(Points()[0], Points()[1]);
}

void DistanceCaliper::Draw(CDC& dc) const
{
    DrawLines(dc, Points());
    DrawPoints(dc);
}

CString DistanceCaliper::Readout() const
{
    return GetStr("exam.value.millimetres", Millimetres());
}

double AngleTool::Degrees() const
{
    const CSize a = Points()[0] - Points()[1];
    const CSize b = Points()[2] - Points()[1];
    const double sx = Image().micronsPerPixel.x;
    const double sy = Image().micronsPerPixel.y;
    const double dot = a.cx * sx * b.cx * sx + a.cy * sy * b.cy * sy;
    const double cross = (1.0 * a.cx * b.cy - 1.0 * a.cy * b.cx) * sx * sy;
    return std::abs(std::atan2(cross, dot)) * 180 / std::numbers::pi;
}

void AngleTool::Draw(CDC& dc) const
{
    DrawLines(dc, Points());
    DrawPoints(dc);
}

CString AngleTool::Readout() const
{
    return GetStr("exam.value.degrees", Degrees());
}

RegionBox::Extent RegionBox::ScanExtent() const
{
    const UPoint a = Image().ScanPosition(Points()[0]);
    const UPoint b = Image().ScanPosition(Points()[1]);
    return {std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)};
}

double RegionBox::DepthMillimetres() const
{
    const Extent extent = ScanExtent();
    return Image().DepthMillimetres(extent.sample1, extent.sample2);
}

double RegionBox::WidthMillimetres() const
{
    const Extent extent = ScanExtent();
    return Image().Millimetres(Image().Pixel(extent.line1, extent.sample2),
                               Image().Pixel(extent.line2, extent.sample2));
}

void RegionBox::Draw(CDC& dc) const
{
    const Extent extent = ScanExtent();
    for (const int line : {extent.line1, extent.line2})
        Image().DrawScanLine(dc, line, extent.sample1, extent.sample2);
    for (const int sample : {extent.sample1, extent.sample2})
        Image().DrawDepthLine(dc, sample, extent.line1, extent.line2);
    DrawPoints(dc);
}

CString RegionBox::Readout() const
{
    return GetStr("exam.value.region", WidthMillimetres(), DepthMillimetres());
}

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
