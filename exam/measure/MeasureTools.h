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

    double Millimetres() const { return Result()[0]; }

    void Draw(CDC& dc) const override;
    CString Readout() const override;
    const char* NameKey() const override { return "exam.tool.distance"; }

protected:
    Values Measure() const override;
};

/// Three points, and the angle at the second one between the other two.
class AngleTool : public ImageTool
{
public:
    using ImageTool::ImageTool;

    /// The angle in degrees, 0 to 180; 0 while two of the points coincide.
    double Degrees() const { return Result()[0]; }

    void Draw(CDC& dc) const override;
    CString Readout() const override;
    const char* NameKey() const override { return "exam.tool.angle"; }

protected:
    Values Measure() const override;
};

/// A region of interest between two scan lines and two depths, so its sides follow the probe's
/// geometry. The pointer drags two opposite corners. A press anywhere on the image grabs the region
/// if no tool has a point near.
class RegionBox : public ImageTool
{
public:
    using ImageTool::ImageTool;

    /// The depth from the shallow to the deep side, in millimetres along the scan line.
    double DepthMillimetres() const { return Result()[1]; }

    /// The length of the chord along the deep side, in millimetres.
    double WidthMillimetres() const { return Result()[0]; }

    void Draw(CDC& dc) const override;
    CString Readout() const override;
    const char* NameKey() const override { return "exam.tool.region"; }

protected:
    Values Measure() const override;
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
    /// `area`: the image's place on the screen.
    MeasureTools(const ImageView& view, const CRect& area);
    MeasureTools(const MeasureTools&) = delete;
    MeasureTools& operator=(const MeasureTools&) = delete;

    DistanceCaliper& Distance() { return m_distance; }
    AngleTool& Angle() { return m_angle; }
    RegionBox& Region() { return m_region; }
    const ImageTool& Distance() const { return m_distance; }
    const ImageTool& Angle() const { return m_angle; }
    const ImageTool& Region() const { return m_region; }
    std::array<ImageTool*, 3> All() { return {&m_distance, &m_angle, &m_region}; }
    std::array<const ImageTool*, 3> All() const { return {&m_distance, &m_angle, &m_region}; }

    /// Goes over to the measurements of the frame that the image shows now.
    void Follow(const FrameName& frame);

    /// The number of measurements, of all tools and frames, whose points the user has set.
    int Measured() const;

    /// Says where the image is on the screen now.
    void SetArea(const CRect& area);

    /// Passes a press of the mouse on, in pixels of the screen. In pointer style the tool in hand,
    /// which is the one shown or grabbed last, takes it before the others, unless the press hits
    /// the point of another one.
    void Press(UINT flags, CPoint at);

    /// Chooses trackball or pointer style, and lets go of a point that is held.
    void SetInput(InputType input);

    /// Draws the visible tools in pixels of the image.
    void Draw(CDC& dc) const;

private:
    ImageTool* InHand();

    CRect m_area;
    unsigned m_uses = 0;
    DistanceCaliper m_distance;
    AngleTool m_angle;
    RegionBox m_region;
};

} // namespace exam
