#include "recording/Mask.h"

#include <utility>

namespace utils_statics {

namespace {

// GetBitmapBits pads rows to 16 bits, even those of a DIB section, whose own rows are padded to 32.
std::size_t MaskStride(LONG width)
{
    return (static_cast<std::size_t>(width) + 15) / 16 * 2;
}

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
    m_bits.resize(MaskStride(description.bmWidth) * static_cast<std::size_t>(description.bmHeight));
    const auto bytes = static_cast<LONG>(m_bits.size());
    if (GetBitmapBits(bitmap, bytes, m_bits.data()) == bytes)
        m_size = {description.bmWidth, description.bmHeight};
}

Mask::Mask(std::vector<std::uint8_t> bits, SIZE size) : m_size(size), m_bits(std::move(bits)) {}

const std::uint8_t* Mask::Row(int y) const
{
    return m_bits.data() + MaskStride(m_size.cx) * static_cast<std::size_t>(y);
}

} // namespace utils_statics
