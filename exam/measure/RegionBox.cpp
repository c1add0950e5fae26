#include "measure/RegionBox.h"

#include <Utils_Statics/GetStr.h>

#include <algorithm>

namespace exam {

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

} // namespace exam
