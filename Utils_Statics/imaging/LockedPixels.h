#pragma once

#include <Utils_Statics/BitmapFunctions.h>

#include <cstdint>
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

} // namespace utils_statics
