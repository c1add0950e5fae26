// The pointer makes and moves marks.
#include "measure/MarkBoard.h"

#include "base/StateChanges.h"
#include "measure/FlowPoints.h"

#include <Utils_Statics/PrecisionMouse.h>

#include <utility>

namespace exam {

namespace {

constexpr double hit = 12;       // pixels; a press so near means the point itself
constexpr double lineHit = 6;    // pixels; a press so near means the whole mark
constexpr double reach = 100;    // pixels within which a press grabs a point of the selected mark
constexpr double leastDrag = 5;  // pixels; a shorter one is a press
constexpr double strokeStep = 3; // pixels between two points of a trace

struct Nearest
{
    int index = -1;
    double distance = 1e9;
};

Nearest NearestGrip(const PixelPoints& points, std::size_t grips, const PixelPoint& at)
{
    Nearest nearest;
    for (std::size_t i = 0; i < grips; ++i)
        if (const double distance = Distance(points[i], at); distance < nearest.distance)
            nearest = {static_cast<int>(i), distance};
    return nearest;
}

} // namespace

bool MarkBoard::Pencil::OnMouseInput(unsigned int message, unsigned int, int x, int y)
{
    if (message == WM_MOUSEMOVE) m_board.Draw(Exactly(CPoint(x, y) - CSize(m_board.m_origin)));
    return message == WM_MOUSEMOVE;
}

void MarkBoard::Pencil::OnReleaseMouse()
{
    m_board.Finish();
}

void MarkBoard::Press(UINT flags, CPoint at)
{
    const bool isPointer = MouseCapture::GetInput() == InputPointer;
    if (isPointer && m_chosen && SurfaceOf(*m_chosen).Area().PtInRect(at))
        return Begin(Exactly(at));
    if (isPointer && m_area.PtInRect(at) && PressMark(at)) return;
    MouseCapture::HandleMouse(WM_LBUTTONDOWN, flags, at + m_origin);
}

// Gives the press to the mark that it means. False when it is left to the arbitration.
bool MarkBoard::PressMark(CPoint at)
{
    const PixelPoint place = Exactly(at);
    MarkHandle* whole = nullptr;
    std::pair<MarkHandle*, Nearest> best;
    for (const auto& handle : m_handles) {
        const Mark& mark = *Find(handle->Number());
        const PixelPoints points = PixelsOf(mark);
        Nearest nearest = NearestGrip(points, Grips(mark), place);
        const bool isHit = nearest.distance <= hit;
        const bool isSelected = mark.number == m_selected && nearest.distance < reach;
        if (isSelected && !isHit) nearest.distance += hit; // any that is hit comes before it
        if ((isHit || isSelected) && nearest.distance < best.second.distance)
            best = {handle.get(), nearest};
        if (DistanceFrom(OutlineOf(mark.kind, points), place) <= lineHit &&
            mark.kind != MarkKind::flow)
            whole = handle.get();
    }
    m_last = place;
    if (best.first && best.second.distance <= hit)
        return MouseCapture::Lock(best.first, best.second.index);
    if (PressTrace(place)) return true;
    if (whole) return MouseCapture::Lock(whole, static_cast<int>(Grips(*Find(whole->Number()))));
    if (best.first) return MouseCapture::Lock(best.first, best.second.index);
    const Mark* const trace = SelectedTrace();
    return trace && Encloses(OutlineOf(trace->kind, PixelsOf(*trace)), place) &&
           MouseCapture::Lock(HandleOf(m_selected), 0);
}

// Gives the press to the point of the selected trace that it hits. A press on the outline between
// two points makes one there.
bool MarkBoard::PressTrace(const PixelPoint& at)
{
    const Mark* const trace = SelectedTrace();
    if (!trace) return false;
    const PixelPoints points = PixelsOf(*trace);
    const PixelPoints outline = OutlineOf(trace->kind, points);
    const Nearest nearest = NearestGrip(points, points.size(), at);
    if (nearest.distance <= lineHit)
        return MouseCapture::Lock(HandleOf(m_selected), nearest.index + 1);
    if (DistanceFrom(outline, at) > lineHit || points.size() >= InfoOf(MarkKind::trace).mostPoints)
        return false;
    const std::size_t place = NearestLine(outline, at);
    MouseCapture::Lock(HandleOf(m_selected), static_cast<int>(place) + 1);
    std::vector<MarkPoint> more = Find(m_selected)->points;
    more.insert(more.begin() + static_cast<std::ptrdiff_t>(place),
                SurfaceOf(MarkKind::trace).PointAt(at));
    m_study.SetPoints(m_selected, std::move(more));
    Refresh();
    return true;
}

const Mark* MarkBoard::SelectedTrace() const
{
    const Mark* const mark = Find(Selected());
    return mark && mark->kind == MarkKind::trace ? mark : nullptr;
}

// The trackball steps through the points of the selected trace once it has come to its whole.
bool MarkBoard::OffersPoints(const Mark& mark) const
{
    return &mark == SelectedTrace() && MouseCapture::GetInput() == InputTrackball;
}

bool MarkBoard::CanRemovePoint() const
{
    const Mark* const trace = SelectedTrace();
    return trace && !IsWorking() && PointAtPlace(*trace, HandleOf(m_selected)->Active()) &&
           trace->points.size() > InfoOf(MarkKind::trace).fewestPoints;
}

void MarkBoard::RemovePoint()
{
    if (!CanRemovePoint()) return;
    MarkHandle& handle = *HandleOf(m_selected);
    std::vector<MarkPoint> fewer = Find(m_selected)->points;
    fewer.erase(fewer.begin() + handle.Active() - 1);
    handle.LetGo();
    PrecisionMouse::ClearPosition();
    m_study.EndGesture();
    m_study.SetPoints(m_selected, std::move(fewer));
    Refresh();
}

// Adds a mark to what is on display. The result is its number; 0 when the study refuses it.
int MarkBoard::Add(MarkKind kind, const PixelPoints& pixels)
{
    const bool isOnStrip = InfoOf(kind).place == MarkPlace::strip;
    m_isPrecise = false;
    m_study.BeginGesture();
    m_frame = m_takeUp();
    Mark mark;
    mark.kind = kind;
    mark.text = m_text;
    mark.object = m_frame.object;
    mark.frame = isOnStrip ? 0 : m_frame.frame;
    mark.points = PointsAt(kind, pixels);
    if (kind == MarkKind::flow || kind == MarkKind::heartRate)
        mark.points = FlowPoints(m_strip, kind, mark.points.front().x, mark.points.back().x);
    const int number = m_study.AddMark(std::move(mark));
    if (!MouseCapture::IsLocked()) m_study.EndGesture();
    Refresh();
    return number;
}

void MarkBoard::Begin(const PixelPoint& at)
{
    m_drawnKind = *m_chosen;
    m_chosen.reset();
    m_from = at;
    m_last = at;
    m_stroke = {at};
    MouseCapture::Lock(&m_pencil, 0);
    m_selected = m_drawn = Add(m_drawnKind, PointsAround(m_drawnKind, at));
}

void MarkBoard::Draw(const PixelPoint& to)
{
    m_last = to;
    if (Distance(m_stroke.back(), to) >= strokeStep &&
        m_stroke.size() < InfoOf(MarkKind::trace).mostPoints)
        m_stroke.push_back(to);
    const Mark* const mark = Find(m_drawn);
    if (!mark || Distance(m_from, to) < leastDrag) return;
    const bool isTrace = m_drawnKind == MarkKind::trace;
    std::vector<MarkPoint> points =
        PointsAt(m_drawnKind, isTrace ? m_stroke : PointsOfDrag(m_drawnKind, m_from, to));
    if (m_drawnKind == MarkKind::flow || m_drawnKind == MarkKind::heartRate)
        points = FlowPoints(m_strip, m_drawnKind, points.front().x, points.back().x);
    m_study.SetPoints(m_drawn, std::move(points));
    Refresh();
}

void MarkBoard::Finish()
{
    m_drawn = 0;
    m_study.EndGesture();
    TellChange(stateMeasurementChanged);
}

void MarkBoard::Take(MarkHandle& handle, int index)
{
    for (const auto& other : m_handles)
        if (other.get() != &handle) other->LetGo();
    m_selected = handle.Number();
    m_isPrecise = false;
    m_isBeside = IsBeside(handle.Number(), index);
    m_study.BeginGesture();
    const Mark* const mark = Find(handle.Number());
    if (mark && !m_isBeside && MouseCapture::GetInput() == InputTrackball) {
        const PixelPoints points = PixelsOf(*mark);
        const auto at = PointAtPlace(*mark, index);
        m_last = at ? points[*at] : MiddleOf(points);
        CRect area = SurfaceOf(mark->kind).Area();
        area.OffsetRect(m_origin);
        MouseCapture::ClipCursor(&area);
        const CPoint cursor = PixelAt(m_last) + m_origin;
        SetCursorPos(cursor.x, cursor.y);
    }
    PrecisionMouse::UpdateHandler(&handle);
    TellChange(stateMeasurementChanged);
}

// True for a point that is not on display. Nobody sees where it would go, so it stays.
bool MarkBoard::IsBeside(int number, int place) const
{
    const Mark* const mark = Find(number);
    const auto index = mark ? PointAtPlace(*mark, place) : std::nullopt;
    if (!index) return false;
    const MarkSurface& surface = SurfaceOf(mark->kind);
    const MarkPoint& point = mark->points[*index];
    return !surface.Shows(point) || !surface.Area().PtInRect(PixelAt(surface.PixelOf(point)));
}

void MarkBoard::Move(int number, int place, const PixelPoint& to)
{
    const Mark* const mark = Find(number);
    if (!mark || m_isBeside) return;
    if (const auto index = PointAtPlace(*mark, place))
        Put(number, *index, to);
    else
        Shift(number, m_last, to);
    Refresh();
}

// Puts one point elsewhere. Points that stay keep their exact places.
void MarkBoard::Put(int number, std::size_t index, const PixelPoint& to)
{
    const Mark& mark = *Find(number);
    PixelPoints pixels = PixelsOf(mark);
    PutPoint(mark.kind, pixels, index, to);
    std::vector<MarkPoint> points = mark.points;
    points[index] = SurfaceOf(mark.kind).PointAt(pixels[index]);
    if (mark.kind == MarkKind::ellipse) points[2] = SurfaceOf(mark.kind).PointAt(pixels[2]);
    m_study.SetPoints(number, std::move(points));
}

// Moves a mark as a whole, unless a part of it would leave the display.
void MarkBoard::Shift(int number, PixelPoint from, const PixelPoint& to)
{
    const Mark& mark = *Find(number);
    const MarkSurface& surface = SurfaceOf(mark.kind);
    m_last = to;
    const CRect area = surface.Area();
    PixelPoints pixels = PixelsOf(mark);
    for (PixelPoint& moved : pixels) {
        moved = {moved.x + to.x - from.x, moved.y + to.y - from.y};
        if (!area.PtInRect(PixelAt(moved)) ||
            Distance(surface.PixelOf(surface.PointAt(moved)), moved) > 1)
            return;
    }
    if (!m_study.MoveMark(number, surface.Way(from, to))) // a picture has no millimetres
        m_study.SetPoints(number, PointsAt(mark.kind, pixels));
}

// All steps of the precision mouse on one point are one step of the study.
void MarkBoard::MovePrecisely(const MarkHandle& handle, int dx, int dy)
{
    const Mark* const mark = Find(handle.Number());
    if (!mark || handle.Active() < 0) return;
    if (!IsWorking() && !m_isPrecise) {
        m_study.BeginGesture();
        m_isPrecise = true;
    }
    const auto index = PointAtPlace(*mark, handle.Active());
    PixelPoint to = index ? PixelsOf(*mark)[*index] : m_last;
    to.x += dx * precisionStep;
    to.y += dy * precisionStep;
    Move(handle.Number(), handle.Active(), to);
}

void MarkBoard::Release()
{
    m_study.EndGesture();
    m_isPrecise = false;
    TellChange(stateMeasurementChanged);
}

} // namespace exam
