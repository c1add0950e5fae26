#include "record/PixelCanvas.h"

#include <algorithm>

namespace exam {

namespace {

BITMAPINFO MakeBitmapInfo(CSize size)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = -size.cy; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    return info;
}

} // namespace

PixelCanvas::PixelCanvas(CSize size) : m_size(size), m_selection(MakeContext(), MakeBitmap()) {}

HDC PixelCanvas::MakeContext()
{
    m_dc.CreateCompatibleDC(nullptr);
    return m_dc.GetSafeHdc();
}

HGDIOBJ PixelCanvas::MakeBitmap()
{
    const BITMAPINFO info = MakeBitmapInfo(m_size);
    void* pixels = nullptr;
    m_bitmap.Attach(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    m_pixels = static_cast<unsigned int*>(pixels);
    return m_bitmap.GetSafeHandle();
}

void PixelCanvas::Clear()
{
    m_dc.FillSolidRect(0, 0, m_size.cx, m_size.cy, RGB(0, 0, 0));
}

void PixelCanvas::Cut(const CRect& part, std::vector<unsigned int>& plane) const
{
    const auto width = static_cast<std::size_t>(part.Width());
    plane.assign(width * static_cast<std::size_t>(part.Height()), 0);
    if (!m_selection) return;
    GdiFlush(); // drawing may still be under way
    auto out = plane.begin();
    for (int y = part.top; y < part.bottom; ++y)
        out = std::copy_n(m_pixels + static_cast<std::ptrdiff_t>(y) * m_size.cx + part.left, width,
                          out);
}

} // namespace exam
