#include "recording/CineComposition.h"

namespace utils_statics {

namespace {

bool IsMonochrome(const BITMAP& description)
{
    return description.bmPlanes == 1 && description.bmBitsPixel == 1 && description.bmWidth > 0 &&
           description.bmHeight > 0;
}

} // namespace

Mask::Mask(HBITMAP bitmap)
{
    BITMAP description{};
    if (!bitmap || GetObjectW(bitmap, sizeof description, &description) == 0 ||
        !IsMonochrome(description))
        return;
    m_bits.resize(Stride(description.bmWidth) * static_cast<std::size_t>(description.bmHeight));
    const auto bytes = static_cast<LONG>(m_bits.size());
    if (GetBitmapBits(bitmap, bytes, m_bits.data()) == bytes)
        m_size = {description.bmWidth, description.bmHeight};
}

} // namespace utils_statics
