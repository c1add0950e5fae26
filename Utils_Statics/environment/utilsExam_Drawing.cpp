// utilsExam: gradients, borders and pictures for image lists.
#include "Utils_Statics/utilsExam.h"

#include <base/GdiHandles.h>

#include <afxcmn.h>
#include <afxwin.h>

namespace {

constexpr COLORREF black = RGB(0, 0, 0);

enum Side : int
{
    leftSide = 1,
    topSide = 2,
    rightSide = 4,
    bottomSide = 8,
};

// Widens a channel of 8 bits to the 16 bits of a vertex.
COLOR16 Widened(BYTE channel)
{
    return static_cast<COLOR16>(channel * 256);
}

TRIVERTEX Vertex(int x, int y, COLORREF colour)
{
    return {
        x, y, Widened(GetRValue(colour)), Widened(GetGValue(colour)), Widened(GetBValue(colour)),
        0};
}

// Draws a line one pixel wide, without its end point.
void DrawLine(CDC& dc, POINT from, POINT to, COLORREF colour)
{
    CPen pen(PS_SOLID, 1, colour);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.MoveTo(from);
    dc.LineTo(to);
}

void DrawBlackColumn(CDC& dc, int x, const CRect& rect)
{
    DrawLine(dc, CPoint(x, rect.top), CPoint(x, rect.bottom), black);
}

void DrawShadedColumn(CDC& dc, int x, const CRect& rect, COLORREF first, COLORREF second)
{
    utilsExam::DrawGradient(&dc, CRect(x, rect.top, x + 1, rect.bottom), second, first);
}

void DrawTop(CDC& dc, const CRect& rect, COLORREF colour)
{
    DrawLine(dc, CPoint(rect.left + 1, rect.top), CPoint(rect.right, rect.top), colour);
    DrawLine(dc, CPoint(rect.left + 2, rect.top + 1), CPoint(rect.right - 1, rect.top + 1), black);
}

void DrawBottom(CDC& dc, const CRect& rect, COLORREF colour)
{
    DrawLine(dc, CPoint(rect.left + 1, rect.bottom - 2), CPoint(rect.right - 2, rect.bottom - 2),
             black);
    DrawLine(dc, CPoint(rect.left, rect.bottom - 1), CPoint(rect.right - 1, rect.bottom - 1),
             colour);
}

BITMAP Description(HBITMAP bitmap)
{
    BITMAP description = {};
    GetObjectW(bitmap, sizeof description, &description);
    return description;
}

// A copy of `bitmap` at another size, in the same colour format; empty when the size is impossible.
// The copy of a bitmap that is selected elsewhere shows nothing, because the platform cannot read
// it.
base::Bitmap Scaled(HBITMAP bitmap, const CSize& size)
{
    const base::MemoryContext source(CreateCompatibleDC(nullptr));
    const base::MemoryContext target(CreateCompatibleDC(nullptr));
    const base::Selection selectedSource(source.get(), bitmap);
    base::Bitmap scaled(CreateCompatibleBitmap(source.get(), size.cx, size.cy));
    const base::Selection selectedTarget(target.get(), scaled.get());
    if (!selectedTarget) return {};
    const BITMAP whole = Description(bitmap);
    SetStretchBltMode(target.get(), HALFTONE);
    SetBrushOrgEx(target.get(), 0, 0, nullptr); // HALFTONE requires it
    StretchBlt(target.get(), 0, 0, size.cx, size.cy, source.get(), 0, 0, whole.bmWidth,
               whole.bmHeight, SRCCOPY);
    return scaled;
}

} // namespace

void utilsExam::DrawGradient(CDC* dc, const CRect& rect, COLORREF top, COLORREF bottom)
{
    if (!dc) return;
    if (top == bottom) {
        dc->FillSolidRect(&rect, top);
        return;
    }
    TRIVERTEX vertices[] = {Vertex(rect.left, rect.top, top),
                            Vertex(rect.right, rect.bottom, bottom)};
    GRADIENT_RECT whole = {0, 1};
    dc->GradientFill(vertices, 2, &whole, 1, GRADIENT_FILL_RECT_V);
}

void utilsExam::DrawDoubleGradient(CDC* dc, const CRect& rect, COLORREF c1, COLORREF c2,
                                   COLORREF c3, COLORREF c4)
{
    if (!dc) return;
    if (c1 == c2 && c1 == c3 && c1 == c4) {
        dc->FillSolidRect(&rect, c1);
        return;
    }
    const int middle = rect.top + (rect.bottom - rect.top) / 2;
    TRIVERTEX vertices[] = {Vertex(rect.left, rect.top, c1), Vertex(rect.right, middle, c2),
                            Vertex(rect.left, middle, c3), Vertex(rect.right, rect.bottom, c4)};
    GRADIENT_RECT halves[] = {{0, 1}, {2, 3}};
    dc->GradientFill(vertices, 4, halves, 2, GRADIENT_FILL_RECT_V);
}

void utilsExam::DrawBorder(CDC* dc, const CRect& rect, int sides, COLORREF first, COLORREF second)
{
    if (!dc) return;
    if (sides & leftSide) {
        DrawBlackColumn(*dc, rect.left, rect);
        DrawShadedColumn(*dc, rect.left + 1, rect, first, second);
    }
    if (sides & rightSide) {
        DrawBlackColumn(*dc, rect.right - 2, rect);
        DrawShadedColumn(*dc, rect.right - 1, rect, first, second);
    }
    if (sides & topSide) DrawTop(*dc, rect, second);
    if (sides & bottomSide) DrawBottom(*dc, rect, first);
}

void utilsExam::AddImage(CImageList& list, CBitmap& bitmap, const CSize& size, COLORREF mask)
{
    if (!bitmap.GetSafeHandle()) return;
    const base::Bitmap scaled = Scaled(bitmap, size);
    ImageList_AddMasked(list, scaled.get(), mask);
}

void utilsExam::AddImage(CImageList& list, unsigned int bitmapId, const CSize& size, COLORREF mask)
{
    CBitmap bitmap;
    if (bitmap.LoadBitmap(bitmapId)) AddImage(list, bitmap, size, mask);
}
