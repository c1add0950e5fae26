#pragma once

#include "image/ImageView.h"

#include <Utils_Statics/IMouseHandler.h>

#include <afxwin.h>

#include <vector>

namespace exam {

// A measuring tool on the image: a few points that the pointer drags, arbitrated by MouseCapture.
// Points are pixels of the image; the arbitration works in client pixels, from which `corner`, the
// image's upper left corner, is taken off. Every change is told through the state-change signal.
class ImageTool : public IMouseHandler
{
public:
    ImageTool(const ImageView& view, CPoint corner, int order, std::vector<CPoint> points);

    bool IsVisible() const { return m_visible; }

    // Shows the tool and lets it take part in the arbitration, or hides it and lets go of the
    // pointer.
    void Show(bool visible);

    const std::vector<CPoint>& Points() const { return m_points; }
    void SetPoints(const std::vector<CPoint>& points);

    // In pixels of the image, with the pen and text settings of the caller.
    virtual void Draw(CDC& dc) const = 0;

    // What the tool measures now, in the current language.
    virtual CString Readout() const = 0;

    // The key of the tool's name in the string table.
    virtual const char* NameKey() const = 0;

protected:
    const ImagingParameters& Image() const { return m_view.Parameters(); }

    // The cross of each point; that of the point in the user's hand is larger.
    void DrawPoints(CDC& dc) const;

    virtual void MovePoint(std::size_t index, CPoint to);

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
    int m_active = -1; // the point in the user's hand, or none
    bool m_visible = false;
};

} // namespace exam
