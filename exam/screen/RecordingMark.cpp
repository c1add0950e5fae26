#include "screen/RecordingMark.h"

#include "base/Palette.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>

namespace exam {

namespace {

constexpr int dotSize = 14;
constexpr int gap = 8;

void DrawDot(CDC& dc, int x, int y)
{
    CBrush brush(palette::recording);
    CPen pen(PS_SOLID, 1, palette::recording);
    const base::Selection fill(dc.GetSafeHdc(), brush.GetSafeHandle());
    const base::Selection edge(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.Ellipse(x, y, x + dotSize, y + dotSize);
}

} // namespace

void DrawRecordingMark(CDC& dc, const CRect& area, int frames)
{
    DrawDot(dc, area.left, area.top + (area.Height() - dotSize) / 2);
    CRect box = area;
    box.left += dotSize + gap;
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(palette::text);
    dc.DrawText(GetStr("exam.record.mark", frames), &box,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

} // namespace exam
