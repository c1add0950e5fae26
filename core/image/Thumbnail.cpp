#include "image/Thumbnail.h"

#include "base/Palette.h"
#include "image/ImageView.h"

#include <base/GdiHandles.h>

namespace exam {

void PaintThumbnail(const FrameSource& source, CSize size, CBitmap& picture)
{
    if (!picture.CreateBitmap(size.cx, size.cy, 1, 32, nullptr)) return;
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    const base::Selection selection(dc.GetSafeHdc(), picture.GetSafeHandle());
    dc.FillSolidRect(0, 0, size.cx, size.cy, palette::background);
    ImageView view;
    view.SetSource(source, size);
    if (source.Frames() > 0 && view.Show(source, source.FirstFrame())) view.Paint(dc, {0, 0});
}

} // namespace exam
