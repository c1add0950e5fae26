#pragma once

#include "image/ImageView.h"

#include <Utils_Statics/IMouseHandler.h>

#include <afxwin.h>

#include <vector>

namespace exam {

/// A measuring tool on the image: a few points that the pointer drags, as MouseCapture allows.
/// The points are pixels of the image, while MouseCapture works in pixels of the client area. The
/// state-change signal tells of every change.
class ImageTool : public IMouseHandler
{
public:
    /// `corner`: the image's upper left corner in the client area; `order`: the tool's place among
    /// those that the lock steps through; `points`: as many as the tool has.
    ImageTool(const ImageView& view, CPoint corner, int order, std::vector<CPoint> points);

    bool IsVisible() const { return m_visible; }

    /// Shows the tool and registers it with MouseCapture, or hides it, lets go of the pointer and
    /// unregisters it.
    void Show(bool visible);

    const std::vector<CPoint>& Points() const { return m_points; }
    void SetPoints(const std::vector<CPoint>& points);

    /// Draws in pixels of the image, with the pen and text settings of the caller.
    virtual void Draw(CDC& dc) const = 0;

    /// The tool's present result, in the current language.
    virtual CString Readout() const = 0;

    /// The key of the tool's name in the string table.
    virtual const char* NameKey() const = 0;

protected:
    const ImagingParameters& Image() const { return m_view.Parameters(); }

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
    const ImageView& m_view;
    CPoint m_corner;
    int m_order;
    std::vector<CPoint> m_points;
    int m_active = -1; // the point that the user holds; -1: none
    bool m_visible = false;
};

} // namespace exam
