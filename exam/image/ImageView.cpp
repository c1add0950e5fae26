#include "image/ImageView.h"

#include <algorithm>

namespace exam {

namespace {

// A bitmap header followed by a grey scale as its colour table: the layout of a BITMAPINFO.
struct GreyBitmapInfo
{
    BITMAPINFOHEADER header{};
    RGBQUAD colours[256];
};

GreyBitmapInfo MakeGreyBitmapInfo(int width)
{
    GreyBitmapInfo info;
    info.header.biSize = sizeof info.header;
    info.header.biWidth = width;
    info.header.biHeight = -1;
    info.header.biPlanes = 1;
    info.header.biBitCount = 8;
    info.header.biCompression = BI_RGB;
    for (int i = 0; i < 256; ++i) {
        const BYTE level = static_cast<BYTE>(i);
        info.colours[i] = {level, level, level, 0};
    }
    return info;
}

} // namespace

void ImageView::SetRecording(const CineFile& cine, CSize size)
{
    m_parameters = FitImage(cine.Description(), size);
    m_map.emplace(m_parameters.ToFrameGeometry());
    m_grey.assign(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy), 0);
}

bool ImageView::Show(const CineFile& cine, int frame)
{
    if (!cine.ReadFrame(frame, m_frame)) return false;
    if (m_map) m_map->Convert(m_frame.data(), m_grey.data());
    return true;
}

void ImageView::Paint(CDC& dc, CPoint at) const
{
    // GDI expects the rows of a bitmap to be padded to four bytes. These are not, so each row is
    // drawn as a bitmap of its own.
    const GreyBitmapInfo info = MakeGreyBitmapInfo(m_parameters.width);
    const auto* const bitmap = reinterpret_cast<const BITMAPINFO*>(&info);
    const std::size_t width = static_cast<std::size_t>(m_parameters.width);
    for (int y = 0; y < m_parameters.height; ++y)
        SetDIBitsToDevice(dc.GetSafeHdc(), at.x, at.y + y, static_cast<DWORD>(width), 1, 0, 0, 0, 1,
                          m_grey.data() + width * static_cast<std::size_t>(y), bitmap,
                          DIB_RGB_COLORS);
}

int ImageView::Grey(CPoint pixel) const
{
    if (pixel.x < 0 || pixel.y < 0 || pixel.x >= m_parameters.width ||
        pixel.y >= m_parameters.height)
        return 0;
    return m_grey[static_cast<std::size_t>(pixel.y) * static_cast<std::size_t>(m_parameters.width) +
                  static_cast<std::size_t>(pixel.x)];
}

} // namespace exam
