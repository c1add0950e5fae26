#include "measure/MarkBoard.h"

#include "base/StateChanges.h"
#include "measure/MarkDrawing.h"

#include <Utils_Statics/PrecisionMouse.h>

#include <algorithm>
#include <utility>

namespace exam {

MarkBoard::MarkBoard(Study& study, const ImageView& view, const SpectralStrip& strip,
                     const CRect& area, TakeUpFrame takeUp)
    : m_study(study), m_frameSurface(view, area.TopLeft()), m_stripSurface(strip), m_strip(strip),
      m_area(area), m_takeUp(std::move(takeUp))
{
    MouseCapture::Initialize(m_area, InputPointer);
}

void MarkBoard::SetArea(const CRect& area, CPoint origin)
{
    if (area == m_area && origin == m_origin) return;
    m_area = area;
    m_origin = origin;
    m_frameSurface.MoveTo(area.TopLeft());
    MouseCapture::Initialize(m_area + m_origin, MouseCapture::GetInput());
}

MarkBoard::~MarkBoard()
{
    if (IsWorking()) MouseCapture::Unlock();
    PrecisionMouse::ClearPosition();
}

void MarkBoard::Follow(StudyFrame frame)
{
    if (frame != m_frame && IsWorking()) MouseCapture::Unlock();
    m_frame = std::move(frame);
    if (UpdateHandles()) TellChange(stateMeasurementChanged);
}

void MarkBoard::Refresh()
{
    UpdateHandles();
    TellChange(stateMeasurementChanged);
}

// Gives each mark on display a handle that is registered, and takes it from the others. False when
// there are the same as before.
bool MarkBoard::UpdateHandles()
{
    const auto isGone = [this](const std::unique_ptr<MarkHandle>& handle) {
        const Mark* const mark = Find(handle->Number());
        return !mark || !IsShown(*mark);
    };
    // The release is told at once, and who hears of it may look at the handles.
    const IMouseHandler* const lock = MouseCapture::GetLock();
    if (std::ranges::any_of(
            m_handles, [&](const auto& handle) { return handle.get() == lock && isGone(handle); }))
        MouseCapture::Unlock();
    if (std::ranges::any_of(m_handles, isGone)) PrecisionMouse::ClearPosition();
    auto changes = std::erase_if(m_handles, isGone);
    for (const auto& mark : m_study.Content().marks) {
        if (!IsShown(*mark) || HandleOf(mark->number)) continue;
        m_handles.push_back(std::make_unique<MarkHandle>(*this, mark->number));
        MouseCapture::Register(m_handles.back().get());
        ++changes;
    }
    return changes > 0;
}

void MarkBoard::Choose(MarkKind kind, const std::wstring& text)
{
    if (IsWorking()) MouseCapture::Unlock();
    if (m_chosen == kind) return ChooseNothing();
    m_chosen = kind;
    m_text = text;
    if (MouseCapture::GetInput() == InputTrackball) {
        const CRect area = SurfaceOf(kind).Area();
        ChooseNothing();
        m_selected = area.IsRectEmpty() ? 0 : Add(kind, PointsAround(kind, MiddleOf(area)));
        if (MarkHandle* const handle = HandleOf(m_selected)) MouseCapture::Lock(handle, 0);
    }
    TellChange(stateMeasurementChanged);
}

void MarkBoard::ChooseNothing()
{
    m_chosen.reset();
    TellChange(stateMeasurementChanged);
}

int MarkBoard::Selected() const
{
    return HandleOf(m_selected) ? m_selected : 0;
}

void MarkBoard::Select(int number)
{
    m_selected = number;
    TellChange(stateMeasurementChanged);
}

std::vector<int> MarkBoard::Shown() const
{
    std::vector<int> numbers;
    for (const auto& handle : m_handles)
        numbers.push_back(handle->Number());
    std::ranges::sort(numbers);
    return numbers;
}

bool MarkBoard::IsWorking() const
{
    const IMouseHandler* const lock = MouseCapture::GetLock();
    return lock && (lock == &m_pencil || std::ranges::any_of(m_handles, [lock](const auto& handle) {
                        return handle.get() == lock;
                    }));
}

bool MarkBoard::Cancel()
{
    if (!IsWorking() && !m_chosen) return false;
    if (IsWorking()) MouseCapture::Unlock();
    ChooseNothing();
    return true;
}

void MarkBoard::SetInput(InputType input)
{
    MouseCapture::Unlock();
    MouseCapture::Initialize(m_area + m_origin, input);
}

void MarkBoard::Draw(CDC& dc, MarkPlace place, double scale) const
{
    for (const auto& handle : m_handles) {
        const Mark& mark = *Find(handle->Number());
        if (InfoOf(mark.kind).place == place)
            DrawMark(
                dc, mark, PixelsOf(mark),
                {mark.number == m_selected, handle->Active(), SurfaceOf(mark.kind).Area(), scale});
    }
}

const MarkSurface& MarkBoard::SurfaceOf(MarkKind kind) const
{
    if (InfoOf(kind).place == MarkPlace::strip) return m_stripSurface;
    return m_frameSurface;
}

PixelPoints MarkBoard::PixelsOf(const Mark& mark) const
{
    PixelPoints pixels;
    for (const MarkPoint& point : mark.points)
        pixels.push_back(SurfaceOf(mark.kind).PixelOf(point));
    return pixels;
}

std::vector<MarkPoint> MarkBoard::PointsAt(MarkKind kind, const PixelPoints& pixels) const
{
    std::vector<MarkPoint> points;
    for (const PixelPoint& pixel : pixels)
        points.push_back(SurfaceOf(kind).PointAt(pixel));
    return points;
}

bool MarkBoard::IsShown(const Mark& mark) const
{
    const bool isOnStrip = InfoOf(mark.kind).place == MarkPlace::strip;
    const MarkSurface& surface = SurfaceOf(mark.kind);
    if (surface.Area().IsRectEmpty() || mark.object != m_frame.object) return false;
    return (isOnStrip || mark.frame == m_frame.frame) &&
           std::ranges::any_of(mark.points,
                               [&](const MarkPoint& point) { return surface.Shows(point); });
}

MarkHandle* MarkBoard::HandleOf(int number) const
{
    const auto found = std::ranges::find_if(
        m_handles, [number](const auto& handle) { return handle->Number() == number; });
    return found == m_handles.end() ? nullptr : found->get();
}

} // namespace exam
