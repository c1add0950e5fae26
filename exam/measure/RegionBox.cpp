#include "measure/RegionBox.h"

#include <Utils_Statics/CImgGeometry.h>
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
    return CImgGeometry::GetUSDistance(extent.sample1, extent.sample2, Image().samplingFreq,
                                       Image().soundSpeed) /
           1000.0;
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
    const ImagingParameters& p = Image();
    for (const int line : {extent.line1, extent.line2})
        CImgGeometry::DrawVerticalUSLine(
            &dc, line, extent.sample1, extent.sample2, p.origin, p.micronsPerPixel, p.samplingFreq,
            p.scanA, p.scanB, &p.probe, p.soundSpeed, p.scanC, p.width, p.height, p.flip, p.ld);
    for (const int sample : {extent.sample1, extent.sample2})
        CImgGeometry::DrawHorizontalUSLine(
            &dc, sample, extent.line1, extent.line2, p.origin, p.micronsPerPixel, p.samplingFreq,
            p.scanA, p.scanB, &p.probe, p.soundSpeed, p.scanC, p.width, p.height, p.flip, p.ld);
    DrawPoints(dc);
}

CString RegionBox::Readout() const
{
    return GetStr("exam.value.region", WidthMillimetres(), DepthMillimetres());
}

} // namespace exam
