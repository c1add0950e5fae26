#pragma once

#include <base/GdiHandles.h>

#include <windows.h>

#include <cstdint>
#include <vector>

namespace device_context_form {

// The composition of a movie frame in its plain form: bitmaps selected into memory device contexts,
// MaskBlt, BitBlt. The library's results must equal it, and it must be faster.

// A memory device context with a bitmap selected into it.
class BitmapContext
{
public:
    explicit BitmapContext(const base::Bitmap& bitmap)
        : m_context(CreateCompatibleDC(nullptr)), m_selection(m_context.get(), bitmap.get())
    {
    }
    operator HDC() const { return m_context.get(); }

private:
    base::MemoryContext m_context;
    base::Selection m_selection;
};

inline int Width(const RECT& rect)
{
    return static_cast<int>(rect.right - rect.left);
}
inline int Height(const RECT& rect)
{
    return static_cast<int>(rect.bottom - rect.top);
}

// A reversed rect has no bitmap of its size, so it places nothing.
inline bool HasArea(const RECT& rect)
{
    return Width(rect) > 0 && Height(rect) > 0;
}

struct Form
{
    int frameWidth;
    int frameHeight;
    RECT rects[6];
    const std::uint32_t* image[5];
    HBITMAP mask[2];

    void PlaceMasked(HDC frame, const RECT& rect, const std::uint32_t* pixels, HBITMAP bits) const
    {
        if (!pixels || !HasArea(rect)) return;
        const base::Bitmap bitmap(CreateBitmap(Width(rect), Height(rect), 1, 32, pixels));
        const BitmapContext plane(bitmap);
        constexpr DWORD keepWhereMaskIsOne = 0xCCAA0000;
        MaskBlt(frame, rect.left, frameHeight - rect.top - Height(rect), Width(rect), Height(rect),
                plane, 0, 0, bits, 0, 0, keepWhereMaskIsOne);
    }

    void PlaceRegion(HDC frame, HDC plane2, const RECT& region) const
    {
        if (!HasArea(region)) return;
        BitBlt(frame, rects[2].left + region.left, frameHeight - rects[2].bottom + region.top,
               Width(region), Height(region), plane2, region.left, region.top, SRCCOPY);
    }

    void PlaceRegions(HDC frame) const
    {
        if (!HasArea(rects[2]) || !image[2]) return;
        const base::Bitmap bitmap(CreateBitmap(Width(rects[2]), Height(rects[2]), 1, 32, image[2]));
        const BitmapContext plane(bitmap);
        PlaceRegion(frame, plane, rects[4]);
        PlaceRegion(frame, plane, rects[5]);
    }

    void Paint(HDC frame, int x, int y, int w, int h, const std::uint32_t* pixels) const
    {
        if (!pixels || w <= 0 || h <= 0) return;
        const base::Bitmap bitmap(CreateBitmap(w, h, 1, 32, pixels));
        const BitmapContext plane(bitmap);
        BitBlt(frame, x, y, w, h, plane, 0, 0, SRCPAINT);
    }

    void PlaceOverlays(HDC frame) const
    {
        const int y0 = frameHeight - rects[0].top - Height(rects[0]);
        const int y1 = frameHeight - rects[1].top - Height(rects[1]);
        const int h4 = Height(rects[3]);
        const bool second = image[1] != nullptr;
        Paint(frame, second ? rects[1].left : 0, second ? y1 : 0, Width(rects[1]), 5, image[3]);
        if (second)
            Paint(frame, rects[1].left, y1 + Height(rects[1]) - rects[3].top - h4, Width(rects[3]),
                  h4, image[4]);
        else
            Paint(frame, rects[0].left, y0 + Height(rects[0]) - rects[3].top - h4, Width(rects[3]),
                  h4, image[4]);
    }

    // Composes onto the frame's pixels in place.
    void Compose(std::uint32_t* pixels) const
    {
        const base::Bitmap bitmap(CreateBitmap(frameWidth, frameHeight, 1, 32, pixels));
        {
            const BitmapContext frame(bitmap);
            PlaceMasked(frame, rects[0], image[0], mask[0]);
            PlaceMasked(frame, rects[1], image[1], mask[1]);
            PlaceRegions(frame);
            PlaceOverlays(frame);
        }
        GetBitmapBits(bitmap.get(), frameWidth * frameHeight * 4, pixels);
    }
};

} // namespace device_context_form
