// utilsExam: pictures for image lists.
#include "Utils_Statics/utilsExam.h"

#include <base/GdiHandles.h>

#include <afxcmn.h>

namespace {

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
