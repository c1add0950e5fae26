#include "screen/Ruler.h"

#include "base/Palette.h"

namespace exam {

namespace {

constexpr int micronsPerHalfCentimetre = 5000;
constexpr int longTick = 10;
constexpr int shortTick = 5;

void DrawTick(CDC& dc, int x, int y, int length)
{
    dc.MoveTo(x, y);
    dc.LineTo(x + length, y);
}

void DrawLabel(CDC& dc, int x, int y, int centimetres)
{
    CString text;
    text.Format(centimetres == 0 ? L"%d cm" : L"%d", centimetres);
    CRect box(x, y - 8, x + 48, y + 8);
    dc.DrawText(text, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
}

} // namespace

void DrawRuler(CDC& dc, const ImagingParameters& image, int x)
{
    if (image.micronsPerPixel.y <= 0 || image.lines < 1) return;
    CPen pen(PS_SOLID, 1, palette::scale);
    CPen* const oldPen = dc.SelectObject(&pen);
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);

    const int middle = image.lines / 2;
    const int top = image.Pixel(middle, 0).y;
    const int bottom = image.Pixel(middle, image.samples - 1).y;
    dc.MoveTo(x, top);
    dc.LineTo(x, bottom);
    for (int half = 0;; ++half) {
        const int y = top + half * micronsPerHalfCentimetre / image.micronsPerPixel.y;
        if (y > bottom) break;
        const bool whole = half % 2 == 0;
        DrawTick(dc, x, y, whole ? longTick : shortTick);
        if (whole) DrawLabel(dc, x + longTick + 4, y, half / 2);
    }
    dc.SelectObject(oldPen);
}

} // namespace exam
