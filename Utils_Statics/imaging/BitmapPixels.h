#pragma once

#include <base/GdiHandles.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>

namespace utils_statics {

// The pixels of a whole GDI+ bitmap as ARGB values while the object lives. They are in place for a
// bitmap of that format; for others GDI+ converts them both ways.
class LockedPixels
{
public:
    enum class Access : UINT
    {
        read = Gdiplus::ImageLockModeRead,
        change = Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite,
    };

    LockedPixels(Gdiplus::Bitmap& bitmap, Access access) : m_bitmap(bitmap)
    {
        const Gdiplus::Rect all(0, 0, static_cast<int>(bitmap.GetWidth()),
                                static_cast<int>(bitmap.GetHeight()));
        if (bitmap.LockBits(&all, static_cast<UINT>(access), PixelFormat32bppARGB, &m_data) ==
            Gdiplus::Ok)
            return;
        m_data = {};
        bitmap.GetLastStatus(); // resets the status: a failed attempt is no fault of the bitmap
    }
    ~LockedPixels()
    {
        if (*this) m_bitmap.UnlockBits(&m_data);
    }
    LockedPixels(const LockedPixels&) = delete;
    LockedPixels& operator=(const LockedPixels&) = delete;

    // False when GDI+ cannot convert the bitmap's format, or has lent the pixels out already.
    explicit operator bool() const { return m_data.Scan0 != nullptr; }

    int Height() const { return static_cast<int>(m_data.Height); }
    // A row counted from the top of the image.
    std::span<std::uint32_t> Row(int y) const
    {
        // The stride is negative for an image whose last row lies first in memory.
        auto* const row =
            static_cast<std::uint8_t*>(m_data.Scan0) + std::ptrdiff_t{m_data.Stride} * y;
        return {reinterpret_cast<std::uint32_t*>(row), m_data.Width};
    }

private:
    Gdiplus::Bitmap& m_bitmap;
    Gdiplus::BitmapData m_data = {};
};

// A copy of the pixels of a device bitmap of 24 or 32 bits a pixel, top row first in whichever
// order the bitmap stores them.
class DevicePixels
{
public:
    explicit DevicePixels(HBITMAP bitmap) : m_bitmap(bitmap)
    {
        BITMAP description = {};
        if (!GetObjectW(bitmap, sizeof description, &description)) return;
        if (description.bmBitsPixel != 24 && description.bmBitsPixel != 32) return;
        m_height = static_cast<UINT>(std::abs(description.bmHeight));
        m_format.biSize = sizeof m_format;
        m_format.biWidth = description.bmWidth;
        m_format.biHeight = -std::abs(description.bmHeight);
        m_format.biPlanes = 1;
        m_format.biBitCount = description.bmBitsPixel;
        m_format.biCompression = BI_RGB;
        m_stride = (Width() * m_format.biBitCount + 31) / 32 * 4;
        m_bytes.reset(new (std::nothrow) std::uint8_t[m_stride * m_height]);
        if (m_bytes && !Load()) m_bytes.reset();
    }

    // False for any other bitmap, for null, and when memory is short.
    explicit operator bool() const { return m_bytes != nullptr; }

    int Height() const { return static_cast<int>(m_height); }
    int BytesPerPixel() const { return m_format.biBitCount / 8; }
    // Only the one that matches BytesPerPixel() may be called.
    std::span<std::uint32_t> Row32(int y)
    {
        return {reinterpret_cast<std::uint32_t*>(Row(y)), Width()};
    }
    std::span<std::uint8_t> Row24(int y) { return {Row(y), Width() * 3}; }

    // The colour of the pixel in the top right corner, without alpha.
    std::uint32_t TopRight()
    {
        const std::uint8_t* const pixel =
            Row(0) + (Width() - 1) * static_cast<std::size_t>(BytesPerPixel());
        return static_cast<std::uint32_t>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
    }

    // Writes the copy back.
    bool Store()
    {
        const base::WindowContext screen(nullptr);
        return SetDIBits(screen.get(), m_bitmap, 0, m_height, m_bytes.get(), Info(),
                         DIB_RGB_COLORS) == static_cast<int>(m_height);
    }

private:
    bool Load()
    {
        const base::WindowContext screen(nullptr);
        return GetDIBits(screen.get(), m_bitmap, 0, m_height, m_bytes.get(), Info(),
                         DIB_RGB_COLORS) == static_cast<int>(m_height);
    }

    std::uint8_t* Row(int y) { return m_bytes.get() + m_stride * static_cast<std::size_t>(y); }
    std::size_t Width() const { return static_cast<std::size_t>(m_format.biWidth); }
    // These formats have no colour table.
    BITMAPINFO* Info() { return reinterpret_cast<BITMAPINFO*>(&m_format); }

    HBITMAP m_bitmap;
    BITMAPINFOHEADER m_format = {};
    UINT m_height = 0;
    std::size_t m_stride = 0;
    std::unique_ptr<std::uint8_t[]> m_bytes;
};

} // namespace utils_statics
