#pragma once

#include <cstddef>
#include <cstdint>

namespace mjpg {

/// The memory layout of an uncompressed frame, blue first.
struct FrameShape
{
    int width = 0;
    int height = 0;
    int stride = 0;        ///< bytes from one row to the next in memory
    int bytesPerPixel = 0; ///< 3 or 4; the fourth byte of a pixel has no meaning
    bool bottomUp = false; ///< the lowest row is the first in memory
};

constexpr int bestQuality = 10000;

/// The bytes needed for any JPEG image of this size, whatever its quality.
std::size_t JpegBound(int width, int height);

/// Encodes a baseline JPEG image with chroma halved in both directions. `quality` is 0 (smallest)
/// to 10000 (best), in effect a whole percentage. `output` must have room for JpegBound(width,
/// height) bytes. Returns the number of bytes written, or 0 when memory is short.
std::size_t EncodeJpeg(const std::uint8_t* pixels, const FrameShape& shape, int quality,
                       std::uint8_t* output);

/// Decodes a JPEG image. The readable part of a damaged one is taken, as movie players do. False,
/// with undefined pixels, when it is not an image, has another size than `shape`, or is broken
/// before its first row.
bool DecodeJpeg(const std::uint8_t* data, std::size_t size, std::uint8_t* pixels,
                const FrameShape& shape);

} // namespace mjpg
