#include "measure/ImageTool.h"

#include "base/Painting.h"
#include "base/StateChanges.h"

#include <Utils_Statics/MouseCapture.h>

#include <algorithm>
#include <utility>

namespace exam {

namespace {

// Half the size of a point's cross, in pixels.
constexpr int restingArm = 6;
constexpr int grabbedArm = 9;

} // namespace

ImageTool::ImageTool(const ImageView& view, CPoint corner, int order, std::vector<CPoint> points)
    : m_view(view), m_corner(corner), m_order(order), m_points(std::move(points))
{
}

void ImageTool::Show(bool visible)
{
    m_visible = visible;
    if (visible)
        MouseCapture::Register(this);
    else {
        if (MouseCapture::GetLock() == this) MouseCapture::Unlock();
        MouseCapture::Unregister(this);
    }
    TellChange(stateMeasurementChanged);
}

void ImageTool::SetPoints(const std::vector<CPoint>& points)
{
    for (std::size_t i = 0; i < std::min(points.size(), m_points.size()); ++i)
        MovePoint(i, points[i]);
    TellChange(stateMeasurementChanged);
}

void ImageTool::DrawPoints(CDC& dc) const
{
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        const CPoint& at = m_points[i];
        const int arm = static_cast<int>(i) == m_active ? grabbedArm : restingArm;
        DrawLines(dc, {CPoint(at.x - arm, at.y), CPoint(at.x + arm + 1, at.y)});
        DrawLines(dc, {CPoint(at.x, at.y - arm), CPoint(at.x, at.y + arm + 1)});
    }
}

void ImageTool::MovePoint(std::size_t index, CPoint to)
{
    m_points[index] = m_view.NearestImaged(to);
}

bool ImageTool::OnMouseInput(unsigned int message, unsigned int, int x, int y)
{
    if (m_active < 0 || m_active >= static_cast<int>(m_points.size())) return false;
    if (message == WM_MOUSEMOVE) {
        MovePoint(static_cast<std::size_t>(m_active), CPoint(x - m_corner.x, y - m_corner.y));
        TellChange(stateMeasurementChanged);
        return true;
    }
    // In trackball style the button puts the point down and takes up the next one.
    if (message == WM_LBUTTONDOWN) {
        MouseCapture::LockNext();
        return true;
    }
    return false;
}

void ImageTool::OnReleaseMouse()
{
    m_active = -1;
    TellChange(stateMeasurementChanged);
}

void ImageTool::GetAutoPoints(std::vector<POINT>& points)
{
    for (const CPoint& point : m_points)
        points.push_back(point + m_corner);
}

void ImageTool::SetLock(int index)
{
    m_active = index;
    if (MouseCapture::GetInput() == InputTrackball) {
        // Client pixels are screen pixels, because the main window's client area begins at the
        // screen's corner.
        CRect area(m_corner, CSize(Image().width, Image().height));
        MouseCapture::ClipCursor(&area);
        if (index >= 0 && index < static_cast<int>(m_points.size())) {
            const CPoint at = m_points[static_cast<std::size_t>(index)] + m_corner;
            SetCursorPos(at.x, at.y);
        }
    }
    TellChange(stateMeasurementChanged);
}

void ImageTool::GetBackgroundRect(CRect& rect)
{
    rect = CRect(m_corner, CSize(Image().width, Image().height));
}

} // namespace exam
