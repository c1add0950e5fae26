#include "measure/MarkPicture.h"

#include "base/Painting.h"
#include "image/PictureFile.h"
#include "measure/MarkDrawing.h"

#include <base/GdiHandles.h>

namespace exam {

namespace {

constexpr COLORREF paper = RGB(255, 255, 255);

void DrawMarks(CDC& dc, const ImageView& view, const StudyContent& study,
               const std::wstring& object, int frame)
{
    const FrameSurface surface(view, CPoint(0, 0));
    for (const auto& mark : study.marks) {
        const bool isOnFrame = InfoOf(mark->kind).place == MarkPlace::frame;
        if (!isOnFrame || mark->object != object || mark->frame != frame) continue;
        PixelPoints points;
        for (const MarkPoint& point : mark->points)
            points.push_back(surface.PixelOf(point));
        DrawMark(dc, *mark, points, {false, -1, surface.Area()});
    }
}

} // namespace

bool SaveMarkedFrame(const FrameSource& source, int frame, const StudyContent& study,
                     const std::wstring& object, CSize size, const std::wstring& path)
{
    ImageView view;
    view.SetSource(source, size);
    if (!view.Show(source, frame)) return false;
    CDC screen;
    screen.CreateCompatibleDC(nullptr);
    CBitmap bitmap;
    if (!bitmap.CreateBitmap(size.cx, size.cy, 1, 32, nullptr)) return false;
    {
        const base::Selection selection(screen.GetSafeHdc(), bitmap.GetSafeHandle());
        const ScopedFont font(screen, ScopedFont::textSize, FW_NORMAL);
        view.Paint(screen, CPoint(0, 0));
        view.FillOutside(screen, CPoint(0, 0), paper);
        DrawMarks(screen, view, study, object, frame);
    }
    return SavePng(static_cast<HBITMAP>(bitmap.GetSafeHandle()), path);
}

} // namespace exam
