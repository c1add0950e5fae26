#include "measure/MarkDrawing.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "study/StudyTexts.h"

#include <base/GdiHandles.h>

#include <algorithm>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi. The first two are half the size of a point's cross.
constexpr int restingArm = 6;
constexpr int grabbedArm = 9;
constexpr int labelGap = 8; // between a mark and its number
constexpr int labelRoom = 4;

std::vector<CPoint> Rounded(const PixelPoints& points)
{
    std::vector<CPoint> pixels;
    for (const PixelPoint& point : points)
        pixels.push_back(PixelAt(point));
    return pixels;
}

void DrawCross(CDC& dc, CPoint at, int arm)
{
    DrawLines(dc, {CPoint(at.x - arm, at.y), CPoint(at.x + arm + 1, at.y)});
    DrawLines(dc, {CPoint(at.x, at.y - arm), CPoint(at.x, at.y + arm + 1)});
}

// Draws a text on a ground of its own, so that it can be read on any echo. It stays within the
// area.
void DrawLabel(CDC& dc, CPoint at, const CString& text, const MarkLook& look)
{
    CSize size = dc.GetTextExtent(text) + CSize(2 * look.Scaled(labelRoom), 2);
    size.cx = std::min<int>(size.cx, look.area.Width() / 2);
    CRect box(at, size);
    box.MoveToXY(std::clamp<int>(box.left, look.area.left, look.area.right - size.cx),
                 std::clamp<int>(box.top, look.area.top,
                                 std::max<int>(look.area.top, look.area.bottom - size.cy)));
    dc.FillSolidRect(&box, palette::header);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(look.isSelected ? palette::accent : palette::text);
    dc.DrawText(text, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
}

CPoint LabelPlace(const std::vector<CPoint>& points, int gap)
{
    const auto last = std::ranges::max_element(points, {}, &CPoint::x);
    return *last + CPoint(gap, -gap);
}

CString LabelOf(const Mark& mark)
{
    if (!InfoOf(mark.kind).isMeasurement) return TextOf(mark).c_str();
    CString label;
    label.Format(L"%d", mark.number);
    return label;
}

} // namespace

void DrawMark(CDC& dc, const Mark& mark, const PixelPoints& points, const MarkLook& look)
{
    const SavedState saved(dc);
    dc.IntersectClipRect(&look.area);
    CPen pen(PS_SOLID, look.Scaled(look.isSelected ? 2 : 1), palette::accent);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    DrawLines(dc, Rounded(OutlineOf(mark.kind, points)));
    const std::vector<CPoint> pixels = Rounded(points);
    for (std::size_t i = 0; i < Grips(mark); ++i)
        DrawCross(dc, pixels[i],
                  look.Scaled(static_cast<int>(i) == look.active ? grabbedArm : restingArm));
    if (const auto active = PointAtPlace(mark, look.active); active && Grips(mark) == 0)
        DrawCross(dc, pixels[*active], look.Scaled(grabbedArm));
    if (const CString label = LabelOf(mark); !label.IsEmpty())
        DrawLabel(dc, LabelPlace(pixels, look.Scaled(labelGap)), label, look);
}

} // namespace exam
