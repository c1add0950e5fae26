#pragma once

#include <Utils_Statics/BitmapFunctions.h>

#include <cstdint>
#include <memory>
#include <span>

namespace utils_statics {

// The pixels of a whole GDI+ bitmap as ARGB values while the object lives. They are in place for a
// bitmap of that format; for others GDI+ converts them both ways.
class LockedPixels
{
public:
    enum class Access
    {
        read,
        change,
    };

    LockedPixels(Gdiplus::Bitmap& bitmap, Access access);
    ~LockedPixels();
    LockedPixels(const LockedPixels&) = delete;
    LockedPixels& operator=(const LockedPixels&) = delete;

    // False when GDI+ cannot convert the bitmap's format, or has lent the pixels out already.
    explicit operator bool() const { return m_data.Scan0 != nullptr; }

    int Height() const { return static_cast<int>(m_data.Height); }
    // A row counted from the top of the image.
    std::span<std::uint32_t> Row(int y) const;

private:
    Gdiplus::Bitmap& m_bitmap;
    Gdiplus::BitmapData m_data = {};
};

// A copy of the pixels of a device bitmap of 24 or 32 bits a pixel, top row first in whichever
// order the bitmap stores them.
class DevicePixels
{
public:
    explicit DevicePixels(HBITMAP bitmap);

    // False for any other bitmap, for null, and when memory is short.
    explicit operator bool() const { return m_bytes != nullptr; }

    int Height() const { return static_cast<int>(m_height); }
    int BytesPerPixel() const { return m_format.biBitCount / 8; }
    // Only the one that matches BytesPerPixel() may be called.
    std::span<std::uint32_t> Row32(int y);
    std::span<std::uint8_t> Row24(int y);

    // The colour of the pixel in the top right corner, without alpha.
    std::uint32_t TopRight();

    // Writes the copy back.
    bool Store();

private:
    std::uint8_t* Row(int y) { return m_bytes.get() + m_stride * static_cast<std::size_t>(y); }
    std::size_t Width() const { return static_cast<std::size_t>(m_format.biWidth); }
    bool Load();

    HBITMAP m_bitmap;
    BITMAPINFOHEADER m_format = {};
    UINT m_height = 0;
    std::size_t m_stride = 0;
    std::unique_ptr<std::uint8_t[]> m_bytes;
};

} // namespace utils_statics
