#pragma once

#include "measure/ImageTool.h"

#include <Utils_Statics/MouseCapture.h>

#include <array>

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

/// The application's measuring tools, in the order in which the lock steps through them.
class MeasureTools
{
public:
    /// `area`: the image's place in the main window's client area.
    MeasureTools(const ImageView& view, const CRect& area);

    DistanceCaliper& Distance() { return m_distance; }
    AngleTool& Angle() { return m_angle; }
    RegionBox& Region() { return m_region; }
    const ImageTool& Distance() const { return m_distance; }
    const ImageTool& Angle() const { return m_angle; }
    const ImageTool& Region() const { return m_region; }
    std::array<ImageTool*, 3> All() { return {&m_distance, &m_angle, &m_region}; }
    std::array<const ImageTool*, 3> All() const { return {&m_distance, &m_angle, &m_region}; }

    /// Puts every tool back to its first place in the imaged region.
    void Reset();

    /// Chooses trackball or pointer style, and lets go of a point that is held.
    void SetInput(InputType input);

    /// Draws the visible tools in pixels of the image.
    void Draw(CDC& dc) const;

private:
    const ImageView& m_view;
    CRect m_area;
    DistanceCaliper m_distance;
    AngleTool m_angle;
    RegionBox m_region;
};

} // namespace exam
