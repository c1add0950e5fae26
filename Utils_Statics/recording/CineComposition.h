#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

// Puts pixel planes onto a frame of 32-bit pixels, with the results of the device-context
// operations MaskBlt (0xCCAA0000), BitBlt SRCCOPY and BitBlt SRCPAINT on bitmaps of the same
// pixels, but without making bitmaps and device contexts for every frame. Whatever lies outside the
// frame, the plane or the mask is left out. Row 0 is the first row in memory.

namespace utils_statics {

/// Width and height of a rect, as a plane has them: 0 x 0 when the rect is empty, reversed or
/// larger than 31 bits.
SIZE PlaneSize(const RECT& rect);

/// Size of plane 3, from rect 1: only its width counts.
SIZE StripSize(const RECT& rect1);

/// Pixels that somebody else owns; null pixels are an empty plane.
struct Plane
{
    std::uint32_t* pixels = nullptr;
    SIZE size{};
};

/// The bits of a monochrome bitmap, read once. 0 lets a plane's pixel through; 1, and all outside
/// the bitmap, does not.
class Mask
{
public:
    /// A bitmap that is null or not monochrome gives an empty mask, which lets nothing through.
    explicit Mask(HBITMAP bitmap);
    /// Bits row by row, the leftmost pixel in the highest bit, rows padded to 16 bits.
    Mask(std::vector<std::uint8_t> bits, SIZE size);

    SIZE size() const { return m_size; }
    const std::uint8_t* row(int y) const;

private:
    SIZE m_size{};
    std::vector<std::uint8_t> m_bits;
};

/// Positions are sums of a caller's 32-bit numbers and need more bits than these.
struct Position
{
    std::int64_t x = 0;
    std::int64_t y = 0;
};

/// Copies the plane to `at` where the mask's bit is 0; the mask's origin lies on the plane's.
void CopyMasked(const Plane& frame, const Plane& plane, const Mask& mask, Position at);

/// Copies the region of the plane to `at`; nothing of it changes when the region is empty or
/// reversed.
void CopyRegion(const Plane& frame, const Plane& plane, const RECT& region, Position at);

/// ORs the plane, all 32 bits, onto the frame at `at`.
void Paint(const Plane& frame, const Plane& plane, Position at);

/// The five planes and two masks of one frame; a plane not given has null pixels.
struct Planes
{
    std::uint32_t* image[5] = {};
    const Mask* mask[2] = {};
};

/// Composes a frame from its planes, laid out by six rects in top-down screen coordinates:
/// 0, 1 destinations of planes 0 and 1; 2 place and size of plane 2; 3 size of plane 4 and, with
/// its top, its vertical offset; 4, 5 the regions taken from plane 2, in its own coordinates. Row 0
/// of the frame is the bottom of the screen.
void Compose(const Plane& frame, const RECT (&rects)[6], const Planes& planes);

} // namespace utils_statics
