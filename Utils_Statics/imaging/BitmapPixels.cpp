#include "imaging/BitmapPixels.h"

#include <base/GdiHandles.h>

#include <new>

namespace utils_statics {

namespace {

UINT LockMode(LockedPixels::Access access)
{
    return access == LockedPixels::Access::read
               ? Gdiplus::ImageLockModeRead
               : Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite;
}

BITMAPINFOHEADER TopDownFormat(const BITMAP& description)
{
    BITMAPINFOHEADER format = {};
    format.biSize = sizeof format;
    format.biWidth = description.bmWidth;
    format.biHeight = -std::abs(description.bmHeight);
    format.biPlanes = 1;
    format.biBitCount = description.bmBitsPixel;
    format.biCompression = BI_RGB;
    return format;
}

BITMAPINFO* Info(BITMAPINFOHEADER& format)
{
    return reinterpret_cast<BITMAPINFO*>(&format); // these formats have no colour table
}

} // namespace

LockedPixels::LockedPixels(Gdiplus::Bitmap& bitmap, Access access) : m_bitmap(bitmap)
{
    const Gdiplus::Rect all(0, 0, static_cast<int>(bitmap.GetWidth()),
                            static_cast<int>(bitmap.GetHeight()));
    if (bitmap.LockBits(&all, LockMode(access), PixelFormat32bppARGB, &m_data) == Gdiplus::Ok)
        return;
    m_data = {};
    bitmap.GetLastStatus(); // resets the status: a failed attempt is no fault of the bitmap
}

LockedPixels::~LockedPixels()
{
    if (*this) m_bitmap.UnlockBits(&m_data);
}

std::span<std::uint32_t> LockedPixels::Row(int y) const
{
    // The stride is negative for an image whose last row lies first in memory.
    auto* const row = static_cast<std::uint8_t*>(m_data.Scan0) + std::ptrdiff_t{m_data.Stride} * y;
    return {reinterpret_cast<std::uint32_t*>(row), m_data.Width};
}

DevicePixels::DevicePixels(HBITMAP bitmap) : m_bitmap(bitmap)
{
    BITMAP description = {};
    if (!GetObjectW(bitmap, sizeof description, &description)) return;
    if (description.bmBitsPixel != 24 && description.bmBitsPixel != 32) return;
    m_format = TopDownFormat(description);
    m_height = static_cast<UINT>(std::abs(description.bmHeight));
    m_stride = (Width() * m_format.biBitCount + 31) / 32 * 4;
    m_bytes.reset(new (std::nothrow) std::uint8_t[m_stride * m_height]);
    if (m_bytes && !Load()) m_bytes.reset();
}

bool DevicePixels::Load()
{
    const base::WindowContext screen(nullptr);
    return GetDIBits(screen.get(), m_bitmap, 0, m_height, m_bytes.get(), Info(m_format),
                     DIB_RGB_COLORS) == static_cast<int>(m_height);
}

bool DevicePixels::Store()
{
    const base::WindowContext screen(nullptr);
    return SetDIBits(screen.get(), m_bitmap, 0, m_height, m_bytes.get(), Info(m_format),
                     DIB_RGB_COLORS) == static_cast<int>(m_height);
}

std::span<std::uint32_t> DevicePixels::Row32(int y)
{
    return {reinterpret_cast<std::uint32_t*>(Row(y)), Width()};
}

std::span<std::uint8_t> DevicePixels::Row24(int y)
{
    return {Row(y), Width() * 3};
}

std::uint32_t DevicePixels::TopRight()
{
    const std::uint8_t* const pixel =
        Row(0) + (Width() - 1) * static_cast<std::size_t>(BytesPerPixel());
    return static_cast<std::uint32_t>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
}

} // namespace utils_statics
