#include "imaging/LockedPixels.h"

namespace utils_statics {

namespace {

UINT LockMode(LockedPixels::Access access)
{
    return access == LockedPixels::Access::read
               ? Gdiplus::ImageLockModeRead
               : Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite;
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

} // namespace utils_statics
