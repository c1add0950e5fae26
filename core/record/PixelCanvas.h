#pragma once

#include <base/GdiHandles.h>

#include <afxwin.h>

#include <algorithm>
#include <vector>

namespace exam {

/// A picture in memory for drawing and reading. Pixels have 32 bits with blue in the lowest byte;
/// rows go from the top.
class PixelCanvas
{
public:
    static constexpr unsigned int opaque = 0xFF000000;

    /// Makes a black picture. When the platform refuses, drawing does nothing and all pixels read
    /// as black.
    explicit PixelCanvas(CSize size) : m_size(size), m_selection(MakeContext(), MakeBitmap()) {}

    explicit operator bool() const { return static_cast<bool>(m_selection); }

    CDC& Context() { return m_dc; }
    void Clear() { m_dc.FillSolidRect(0, 0, m_size.cx, m_size.cy, RGB(0, 0, 0)); }

    /// Copies `part`, which lies within the picture, into `plane`. The fourth byte of each pixel,
    /// which drawing leaves as it likes, becomes 255: some players take it for opacity.
    void Cut(const CRect& part, std::vector<unsigned int>& plane) const
    {
        const auto width = static_cast<std::size_t>(part.Width());
        plane.assign(width * static_cast<std::size_t>(part.Height()), opaque);
        if (!m_selection) return;
        GdiFlush(); // drawing may still be under way
        auto out = plane.begin();
        for (std::ptrdiff_t y = part.top; y < part.bottom; ++y)
            out = std::transform(m_pixels + y * m_size.cx + part.left,
                                 m_pixels + y * m_size.cx + part.left + width, out,
                                 [](unsigned int pixel) { return pixel | opaque; });
    }

private:
    // Each function makes a member and returns its handle, which is null when the platform refuses.
    HDC MakeContext()
    {
        m_dc.CreateCompatibleDC(nullptr);
        return m_dc.GetSafeHdc();
    }
    HGDIOBJ MakeBitmap()
    {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = m_size.cx;
        info.bmiHeader.biHeight = -m_size.cy; // rows from the top
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* pixels = nullptr;
        m_bitmap.Attach(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
        m_pixels = static_cast<unsigned int*>(pixels);
        return m_bitmap.GetSafeHandle();
    }

    CSize m_size;
    CDC m_dc;
    CBitmap m_bitmap;
    unsigned int* m_pixels = nullptr; // owned by the bitmap
    base::Selection m_selection;      // uses the members above
};

} // namespace exam
