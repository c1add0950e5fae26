#include "image/GreyBitmap.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace exam {

namespace {

// A bitmap header followed by a grey scale as its colour table: the layout of a BITMAPINFO.
struct GreyBitmapInfo
{
    BITMAPINFOHEADER header{};
    RGBQUAD colours[256];
};

GreyBitmapInfo MakeGreyBitmapInfo(CSize size)
{
    GreyBitmapInfo info;
    info.header.biSize = sizeof info.header;
    info.header.biWidth = size.cx;
    info.header.biHeight = -size.cy;
    info.header.biPlanes = 1;
    info.header.biBitCount = 8;
    info.header.biCompression = BI_RGB;
    info.header.biClrUsed = 256; // a metafile does not work it out
    for (int i = 0; i < 256; ++i) {
        const BYTE level = static_cast<BYTE>(i);
        info.colours[i] = {level, level, level, 0};
    }
    return info;
}

void PaintRows(CDC& dc, CPoint at, CSize size, const std::uint8_t* levels)
{
    const GreyBitmapInfo info = MakeGreyBitmapInfo(size);
    SetDIBitsToDevice(dc.GetSafeHdc(), at.x, at.y, static_cast<DWORD>(size.cx),
                      static_cast<DWORD>(size.cy), 0, 0, 0, static_cast<UINT>(size.cy), levels,
                      reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS);
}

} // namespace

void PaintGrey(CDC& dc, CPoint at, CSize size, const std::uint8_t* levels)
{
    // The platform expects rows that are padded to four bytes.
    constexpr int padding = 4;
    const int stride = (size.cx + padding - 1) / padding * padding;
    if (stride == size.cx) return PaintRows(dc, at, size, levels);
    std::vector<std::uint8_t> padded(static_cast<std::size_t>(stride) *
                                     static_cast<std::size_t>(size.cy));
    for (std::ptrdiff_t y = 0; y < size.cy; ++y)
        std::copy_n(levels + y * size.cx, size.cx, padded.begin() + y * stride);
    PaintRows(dc, at, size, padded.data());
}

void PaintColours(CDC& dc, CPoint at, CSize size, const std::uint8_t* pixels)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    SetDIBitsToDevice(dc.GetSafeHdc(), at.x, at.y, static_cast<DWORD>(size.cx),
                      static_cast<DWORD>(size.cy), 0, 0, 0, static_cast<UINT>(size.cy), pixels,
                      &info, DIB_RGB_COLORS);
}

} // namespace exam
