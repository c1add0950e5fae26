#pragma once

#include "measure/AngleTool.h"
#include "measure/DistanceCaliper.h"
#include "measure/RegionBox.h"

#include <Utils_Statics/MouseCapture.h>

#include <array>

namespace exam {

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
