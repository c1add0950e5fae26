#pragma once

#include "measure/ImageTool.h"

namespace exam {

/// Three points, and the angle at the second one between the other two.
class AngleTool : public ImageTool
{
public:
    using ImageTool::ImageTool;

    /// The angle in degrees, 0 to 180; 0 while two of the points coincide.
    double Degrees() const;

    void Draw(CDC& dc) const override;
    CString Readout() const override;
    const char* NameKey() const override { return "exam.tool.angle"; }
};

} // namespace exam
