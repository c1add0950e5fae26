#include "measure/ImageTool.h"

#include "base/Painting.h"
#include "base/StateChanges.h"

#include <Utils_Statics/MouseCapture.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace exam {

namespace {

// Half the size of a point's cross, in pixels.
constexpr int restingArm = 6;
constexpr int grabbedArm = 9;

// Pixels by which a place that is shown at another scale may miss the imaged region.
constexpr int rounding = 2;

} // namespace

ImageTool::ImageTool(const ToolSurroundings& surroundings, int order, std::vector<CPoint> places)
    : m_surroundings(surroundings), m_order(order), m_places(std::move(places)),
      m_points(m_places.size())
{
}

void ImageTool::Follow(const FrameName& frame)
{
    if (frame != m_frame && MouseCapture::GetLock() == this) MouseCapture::Unlock();
    m_frame = frame;
    m_isInside = PlacePoints();
    ShowOrHide();
}

// Puts the points where the frame's measurement is, or at their first places. False when the image
// does not show one of them.
bool ImageTool::PlacePoints()
{
    const CRect imaged = m_surroundings.view.ImagedRect();
    const Mark* const mark = Current();
    bool isInside = true;
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        const CPoint wanted =
            mark ? Image().PixelOf(mark->points[i])
                 : imaged.TopLeft() + CPoint(imaged.Width() * m_places[i].x / 100,
                                             imaged.Height() * m_places[i].y / 100);
        m_points[i] = m_surroundings.view.NearestImaged(wanted);
        const CSize away = m_points[i] - wanted;
        isInside = isInside && std::abs(away.cx) <= rounding && std::abs(away.cy) <= rounding;
    }
    return isInside || !mark;
}

void ImageTool::ShowOrHide()
{
    const Mark* const mark = Current();
    const bool visible = mark && mark->isShown && m_isInside;
    if (visible == m_visible) return;
    m_visible = visible;
    if (visible)
        MouseCapture::Register(this);
    else {
        if (MouseCapture::GetLock() == this) MouseCapture::Unlock();
        MouseCapture::Unregister(this);
    }
    TellChange(stateMeasurementChanged);
}

const ImageTool::Mark* ImageTool::Current() const
{
    const auto found = m_marks.find(m_frame);
    return found == m_marks.end() ? nullptr : &found->second;
}

// The frame's measurement, with the places and the values of the points as they are now.
ImageTool::Mark& ImageTool::Keep()
{
    Mark& mark = m_marks[m_frame];
    mark.points.clear();
    for (const CPoint& point : m_points)
        mark.points.push_back(Image().InFrame(point));
    mark.values = Measure();
    m_isInside = true;
    return mark;
}

bool ImageTool::IsOutside() const
{
    return Current() && Current()->isShown && !m_isInside;
}

void ImageTool::Show(bool visible)
{
    if (visible) m_lastUse = ++m_surroundings.uses;
    if (visible || Current()) (Current() ? m_marks[m_frame] : Keep()).isShown = visible;
    ShowOrHide();
}

void ImageTool::Clear()
{
    m_marks.erase(m_frame);
    m_isInside = PlacePoints();
    ShowOrHide();
}

int ImageTool::Measured() const
{
    return static_cast<int>(std::count_if(m_marks.begin(), m_marks.end(),
                                          [](const auto& mark) { return mark.second.isMeasured; }));
}

ImageTool::Values ImageTool::Result() const
{
    return Current() ? Current()->values : Measure();
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
    m_points[index] = m_surroundings.view.NearestImaged(to);
    Keep().isMeasured = true;
}

bool ImageTool::OnMouseInput(unsigned int message, unsigned int, int x, int y)
{
    if (m_active < 0 || m_active >= static_cast<int>(m_points.size())) return false;
    if (message == WM_MOUSEMOVE) {
        MovePoint(static_cast<std::size_t>(m_active),
                  CPoint(CPoint(x, y) - m_surroundings.area.TopLeft()));
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
        points.push_back(point + m_surroundings.area.TopLeft());
}

void ImageTool::SetLock(int index)
{
    m_active = index;
    m_lastUse = ++m_surroundings.uses;
    if (MouseCapture::GetInput() == InputTrackball) {
        CRect area = m_surroundings.area;
        MouseCapture::ClipCursor(&area);
        if (index >= 0 && index < static_cast<int>(m_points.size())) {
            const CPoint at =
                m_points[static_cast<std::size_t>(index)] + m_surroundings.area.TopLeft();
            SetCursorPos(at.x, at.y);
        }
    }
    TellChange(stateMeasurementChanged);
}

void ImageTool::GetBackgroundRect(CRect& rect)
{
    rect = m_surroundings.area;
}

} // namespace exam
