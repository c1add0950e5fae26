#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <vector>

// Puts pixel planes onto a frame of 32-bit pixels. The results are those of the device-context
// operations MaskBlt (0xCCAA0000), BitBlt SRCCOPY and BitBlt SRCPAINT on bitmaps of the same
// pixels, but no frame needs bitmaps or device contexts. Pixels outside the frame, the plane or the
// mask are left out. Row 0 is the first row in memory.

namespace utils_statics {

// The size of a plane with this rect: 0 x 0 when the rect is empty, reversed or larger than 31
// bits.
SIZE PlaneSize(const RECT& rect);

// The size of plane 3, from rect 1, of which only the width counts.
SIZE StripSize(const RECT& rect1);

// Pixels owned elsewhere; null pixels make an empty plane.
struct Plane
{
    std::uint32_t* pixels = nullptr;
    SIZE size{};
};

// Positions are sums of a caller's 32-bit numbers and need more bits.
struct Position
{
    std::int64_t x = 0;
    std::int64_t y = 0;
};

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
    // The bytes of a row. GetBitmapBits pads rows to 16 bits, even those of a DIB section, whose
    // own rows are padded to 32.
    static std::size_t Stride(LONG width);

    SIZE m_size{};
    std::vector<std::uint8_t> m_bits;
};

// Copies the plane to `at` where the mask's bit is 0. Mask and plane have the same origin.
void CopyMasked(const Plane& frame, const Plane& plane, const Mask& mask, Position at);

// Copies the region of the plane to `at`. An empty or reversed region changes nothing.
void CopyRegion(const Plane& frame, const Plane& plane, const RECT& region, Position at);

// ORs the plane, all 32 bits, onto the frame at `at`.
void Paint(const Plane& frame, const Plane& plane, Position at);

// The orientation of a plane when its owner hands it over.
struct Orientation
{
    bool bottomUp = false; // the first row is the bottom one
    bool mirrored = false; // left and right are swapped
};

// The five planes and two masks of one frame; a plane not given has null pixels.
struct Planes
{
    std::uint32_t* image[5] = {};
    Orientation orientation[2] = {}; // for planes 0 and 1; the others have the top row first
    const Mask* mask[2] = {};
};

// Six rects in top-down screen coordinates. Rects 0 and 1 are the destinations of planes 0 and 1.
// Rect 2 is the place and size of plane 2. Rect 3 is the size of plane 4, and its top is the
// vertical offset. Rects 4 and 5 are the regions copied from plane 2, in its own coordinates.
using Layout = RECT[6];

// Turns the planes in place to the frame's orientation: bottom row first, not mirrored.
void TurnPlanes(const Layout& layout, const Planes& planes);

// Composes a frame from its turned planes. Row 0 of the frame is the bottom of the screen.
void Compose(const Plane& frame, const Layout& layout, const Planes& planes);

} // namespace utils_statics
