#include "measure/MeasureTools.h"

#include "base/Painting.h"
#include "base/Palette.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace exam {

namespace {

constexpr double hit = 12;    // pixels; a press so near means the point itself
constexpr double reach = 100; // pixels within which a press grabs a point

struct Nearest
{
    int index = 0;
    double distance = reach;
};

Nearest NearestPoint(const ImageTool& tool, CPoint pixel)
{
    Nearest nearest;
    for (std::size_t i = 0; i < tool.Points().size(); ++i) {
        const CSize away = tool.Points()[i] - pixel;
        const double distance = std::hypot(away.cx, away.cy);
        if (distance < nearest.distance) nearest = {static_cast<int>(i), distance};
    }
    return nearest;
}

} // namespace

ImageTool::Values DistanceCaliper::Measure() const
{
    return {Image().Millimetres(Points()[0], Points()[1])};
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

ImageTool::Values AngleTool::Measure() const
{
    const CSize a = Points()[0] - Points()[1];
    const CSize b = Points()[2] - Points()[1];
    const double sx = Image().micronsPerPixel.x;
    const double sy = Image().micronsPerPixel.y;
    const double dot = a.cx * sx * b.cx * sx + a.cy * sy * b.cy * sy;
    const double cross = (1.0 * a.cx * b.cy - 1.0 * a.cy * b.cx) * sx * sy;
    return {std::abs(std::atan2(cross, dot)) * 180 / std::numbers::pi};
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

ImageTool::Values RegionBox::Measure() const
{
    const Extent extent = ScanExtent();
    return {Image().Millimetres(Image().Pixel(extent.line1, extent.sample2),
                                Image().Pixel(extent.line2, extent.sample2)),
            Image().DepthMillimetres(extent.sample1, extent.sample2)};
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
    : m_area(area), m_distance({view, m_area, m_uses}, 1, {{42, 40}, {58, 40}}),
      m_angle({view, m_area, m_uses}, 2, {{36, 50}, {42, 66}, {52, 52}}),
      m_region({view, m_area, m_uses}, 3, {{40, 60}, {62, 76}})
{
    MouseCapture::Initialize(m_area, InputPointer);
}

void MeasureTools::SetArea(const CRect& area)
{
    if (area == m_area) return;
    m_area = area;
    MouseCapture::Initialize(m_area, MouseCapture::GetInput());
}

void MeasureTools::Follow(const FrameName& frame)
{
    for (ImageTool* const tool : All())
        tool->Follow(frame);
}

int MeasureTools::Measured() const
{
    return m_distance.Measured() + m_angle.Measured() + m_region.Measured();
}

// The visible tool that was used last; null without a visible one.
ImageTool* MeasureTools::InHand()
{
    ImageTool* inHand = nullptr;
    for (ImageTool* const tool : All())
        if (tool->IsVisible() && (!inHand || tool->LastUse() > inHand->LastUse())) inHand = tool;
    return inHand;
}

void MeasureTools::Press(UINT flags, CPoint at)
{
    ImageTool* const inHand = InHand();
    if (MouseCapture::GetInput() != InputPointer || !inHand || !m_area.PtInRect(at)) {
        MouseCapture::HandleMouse(WM_LBUTTONDOWN, flags, at);
        return;
    }
    const CPoint pixel(at - m_area.TopLeft());
    const Nearest own = NearestPoint(*inHand, pixel);
    const auto tools = All();
    const bool hitsAnother =
        own.distance > hit && std::any_of(tools.begin(), tools.end(), [&](const ImageTool* tool) {
            return tool != inHand && tool->IsVisible() &&
                   NearestPoint(*tool, pixel).distance <= hit;
        });
    if (hitsAnother || own.distance >= reach)
        MouseCapture::HandleMouse(WM_LBUTTONDOWN, flags, at);
    else
        MouseCapture::Lock(inHand, own.index);
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
