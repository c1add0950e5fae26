#include "screen/Ruler.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "measure/MarkShapes.h"
#include "study/StudyTexts.h"

#include <base/GdiHandles.h>

#include <algorithm>
#include <string>

namespace exam {

namespace {

constexpr int micronsPerHalfCentimetre = 5000;

// Lengths in pixels at 96 dpi.
constexpr int longTick = 10;
constexpr int shortTick = 5;
constexpr int tickGap = 4;
constexpr CSize labelSize(48, 16);

// The parts of the scale are given by their place along the depth and across it, in pixels of the
// image.
class Ruler
{
public:
    Ruler(const ScreenLayout& layout, const ImagingParameters& image)
        : m_layout(layout), m_image(image), m_isOnSide(image.orientation.IsOnSide()),
          m_base(m_isOnSide ? layout.image.Height() : layout.image.Width()),
          m_room(m_isOnSide ? layout.image.Width() : layout.image.Height())
    {
    }

    // The place along the depth of what lies so many microns below the probe's face.
    int At(int microns) const
    {
        const FramePoint face = m_image.InFrame(Exactly(m_image.Pixel(m_image.lines / 2, 0)));
        const CPoint pixel = PixelAt(m_image.PixelOf({face.x, face.y + microns}));
        return m_isOnSide ? pixel.x : pixel.y;
    }
    bool IsShown(int along) const { return along >= 0 && along <= m_room; }

    void DrawLine(CDC& dc, int from, int to, int across) const
    {
        DrawLines(dc, {PointAt(from, 0), PointAt(to, across)});
    }

    // The number stands at its tick, or as near as it stays within the image.
    void DrawLabel(CDC& dc, int along, int centimetres) const
    {
        const MarkValue shown = AsShown({"", "study.unit.mm", 10.0 * centimetres, 0});
        std::wstring text = NumberText(shown.value, 0);
        if (centimetres == 0) text += L" " + TextOf(shown.unitKey);
        const CSize size = dc.GetTextExtent(text.c_str());
        const int length = m_isOnSide ? size.cx : size.cy;
        const int begin = std::clamp(along - length / 2, 0, std::max(0, m_room - length));
        CRect box(PointAt(begin, m_layout.Scaled(longTick + tickGap)), size);
        dc.DrawText(text.c_str(), &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
    }

    // The whole centimetres from one number to the next, so that the numbers stand apart.
    int LabelStep() const
    {
        const int room = m_layout.Scaled(m_isOnSide ? labelSize.cx : labelSize.cy);
        for (const int step : {1, 2, 5})
            if (step * 2 * micronsPerHalfCentimetre / m_image.micronsPerPixel.y > room) return step;
        return 10;
    }

private:
    CPoint PointAt(int along, int across) const
    {
        return m_isOnSide ? CPoint(along, m_base + across) : CPoint(m_base + across, along);
    }

    const ScreenLayout& m_layout;
    const ImagingParameters& m_image;
    bool m_isOnSide;
    int m_base;
    int m_room;
};

} // namespace

void DrawRuler(CDC& dc, const ScreenLayout& layout, const ImagingParameters& image)
{
    if (image.micronsPerPixel.y <= 0 || image.lines < 1) return;
    CPen pen(PS_SOLID, 1, palette::scale);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);

    const Ruler ruler(layout, image);
    const int depth = static_cast<int>(image.DepthMillimetres() * 1000);
    const int labelStep = 2 * ruler.LabelStep();
    ruler.DrawLine(dc, ruler.At(0), ruler.At(depth), 0);
    for (int half = 0; half * micronsPerHalfCentimetre <= depth; ++half) {
        const int along = ruler.At(half * micronsPerHalfCentimetre);
        if (!ruler.IsShown(along)) continue;
        ruler.DrawLine(dc, along, along, layout.Scaled(half % 2 == 0 ? longTick : shortTick));
        if (half % labelStep == 0) ruler.DrawLabel(dc, along, half / 2);
    }
}

} // namespace exam
