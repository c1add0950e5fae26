#include "screen/Ruler.h"

#include "base/Palette.h"
#include "base/Strokes.h"

#include <base/GdiHandles.h>

namespace exam {

namespace {

constexpr int micronsPerHalfCentimetre = 5000;
constexpr int longTick = 10;
constexpr int shortTick = 5;

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
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);

    const int middle = image.lines / 2;
    const int top = image.Pixel(middle, 0).y;
    const int bottom = image.Pixel(middle, image.samples - 1).y;
    DrawLines(dc, {CPoint(x, top), CPoint(x, bottom)});
    for (int half = 0;; ++half) {
        const int y = top + half * micronsPerHalfCentimetre / image.micronsPerPixel.y;
        if (y > bottom) break;
        const bool whole = half % 2 == 0;
        DrawLines(dc, {CPoint(x, y), CPoint(x + (whole ? longTick : shortTick), y)});
        if (whole) DrawLabel(dc, x + longTick + 4, y, half / 2);
    }
}

} // namespace exam
