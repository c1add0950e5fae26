#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace utils_statics {

// The bits of a monochrome bitmap, read once. 0 lets a plane's pixel through. 1 does not, and
// neither does a pixel outside the bitmap.
class Mask
{
public:
    // A bitmap that is null or not monochrome gives an empty mask, which lets nothing through.
    explicit Mask(HBITMAP bitmap);
    // The bits lie row by row, the leftmost pixel in the highest bit, rows padded to 16 bits.
    Mask(std::vector<std::uint8_t> bits, SIZE size);

    SIZE Size() const { return m_size; }
    const std::uint8_t* Row(int y) const;

private:
    SIZE m_size{};
    std::vector<std::uint8_t> m_bits;
};

} // namespace utils_statics
