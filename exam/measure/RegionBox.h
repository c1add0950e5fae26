#pragma once

#include "measure/ImageTool.h"

namespace exam {

/// A region of interest between two scan lines and two depths, so its sides follow the probe's
/// geometry. The pointer drags two opposite corners. A press anywhere on the image grabs the region
/// if no tool has a point near.
class RegionBox : public ImageTool
{
public:
    using ImageTool::ImageTool;

    /// The depth from the shallow to the deep side, in millimetres along the scan line.
    double DepthMillimetres() const;

    /// The length of the chord along the deep side, in millimetres.
    double WidthMillimetres() const;

    void Draw(CDC& dc) const override;
    CString Readout() const override;
    const char* NameKey() const override { return "exam.tool.region"; }

protected:
    bool HasBackgroundPoint() const override { return true; }

private:
    struct Extent
    {
        int line1, line2, sample1, sample2;
    };
    Extent ScanExtent() const;
};

} // namespace exam
