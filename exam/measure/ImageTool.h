#pragma once

#include "image/ImageView.h"

#include <Utils_Statics/IMouseHandler.h>

#include <afxwin.h>

#include <array>
#include <compare>
#include <cstddef>
#include <map>
#include <vector>

namespace exam {

/// Names one frame of the exam's recordings.
struct FrameName
{
    std::size_t recording = 0;
    int frame = 0;

    friend auto operator<=>(const FrameName&, const FrameName&) = default;
};

/// The things that all tools of an image share.
struct ToolSurroundings
{
    const ImageView& view;
    const CRect& area; ///< the image's place on the screen
    unsigned& uses;    ///< counts what is done with the tools
};

/// A measuring tool on the image: a few points that the pointer drags, as MouseCapture allows.
/// Each frame has a measurement of its own. It belongs to the places in the frame that were
/// pointed at, and its value is the one that was measured there, whatever depth is shown later.
/// The points are pixels of the image, while MouseCapture works in pixels of the screen. The
/// state-change signal tells of every change.
class ImageTool : public IMouseHandler
{
public:
    /// A tool has at most two values.
    using Values = std::array<double, 2>;

    /// `order`: the tool's place among those that the lock steps through; `places`: where its
    /// points are at first, in percent of the imaged region's width and height.
    ImageTool(const ToolSurroundings& surroundings, int order, std::vector<CPoint> places);

    /// Goes over to the measurement of the frame that the image shows now, at the image's scale.
    void Follow(const FrameName& frame);

    /// True when the frame's measurement is shown: it is wanted, and lies within the image.
    bool IsVisible() const { return m_visible; }

    /// True when the measurement is wanted, and a part of it lies outside the image.
    bool IsOutside() const;

    /// Shows the tool and registers it with MouseCapture, or hides it, lets go of the pointer and
    /// unregisters it. A hidden measurement is kept.
    void Show(bool visible);

    /// Removes the frame's measurement.
    void Clear();

    /// The number of measurements, of all frames, whose points the user has set.
    int Measured() const;

    const std::vector<CPoint>& Points() const { return m_points; }
    void SetPoints(const std::vector<CPoint>& points);

    /// The values of the frame's measurement, as they were measured.
    Values Result() const;

    /// Says when the tool was last shown or grabbed; the highest number is the last one.
    unsigned LastUse() const { return m_lastUse; }

    /// Draws in pixels of the image, with the pen and text settings of the caller.
    virtual void Draw(CDC& dc) const = 0;

    /// The tool's present result, in the current language.
    virtual CString Readout() const = 0;

    /// The key of the tool's name in the string table.
    virtual const char* NameKey() const = 0;

protected:
    /// Measures between the points as they are now.
    virtual Values Measure() const = 0;

    const ImagingParameters& Image() const { return m_surroundings.view.Parameters(); }

    /// Draws a cross at each point. The cross of the point that the user holds is larger.
    void DrawPoints(CDC& dc) const;

    /// Moves a point to the nearest place inside the imaged region.
    void MovePoint(std::size_t index, CPoint to);

    bool OnMouseInput(unsigned int message, unsigned int flags, int x, int y) override;
    void OnReleaseMouse() override;
    void GetAutoPoints(std::vector<POINT>& points) override;
    void SetLock(int index) override;
    int GetLockOrder() const override { return m_order; }
    void GetBackgroundRect(CRect& rect) override;

private:
    // A frame's measurement.
    struct Mark
    {
        std::vector<FramePoint> points;
        Values values{};
        bool isShown = false;
        bool isMeasured = false; // the user has set a point
    };

    const Mark* Current() const;
    Mark& Keep();
    bool PlacePoints();
    void ShowOrHide();

    ToolSurroundings m_surroundings;
    int m_order;
    std::vector<CPoint> m_places;
    std::map<FrameName, Mark> m_marks;
    FrameName m_frame;
    std::vector<CPoint> m_points;
    int m_active = -1; // the point that the user holds; -1: none
    bool m_visible = false;
    bool m_isInside = true; // the points lie within the image
    unsigned m_lastUse = 0;
};

} // namespace exam
