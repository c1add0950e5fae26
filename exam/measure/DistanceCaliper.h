#pragma once

#include "measure/ImageTool.h"

namespace exam {

/// Two points and the distance between them in millimetres.
class DistanceCaliper : public ImageTool
{
public:
    using ImageTool::ImageTool;

    double Millimetres() const;

    void Draw(CDC& dc) const override;
    CString Readout() const override;
    const char* NameKey() const override { return "exam.tool.distance"; }
};

} // namespace exam
