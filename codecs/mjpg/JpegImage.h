#pragma once

#include <cstddef>
#include <cstdint>

namespace mjpg {

/// How an uncompressed frame, blue first, lies in memory.
struct FrameShape
{
    int width = 0;
    int height = 0;
    int stride = 0;        ///< bytes from a row to the next in memory
    int bytesPerPixel = 0; ///< 3 or 4; the fourth byte of a pixel means nothing
    bool bottomUp = false; ///< the lowest row is the first in memory
};

constexpr int bestQuality = 10000;

/// Bytes that hold any JPEG image of this size, whatever its quality.
std::size_t JpegBound(int width, int height);

/// Encodes a baseline JPEG image with chroma halved in both directions. `quality` is 0 (smallest)
/// to 10000 (best), in effect a whole percentage. `output` takes JpegBound(width, height) bytes.
/// The number of bytes written, 0 when there is no memory.
std::size_t EncodeJpeg(const std::uint8_t* pixels, const FrameShape& shape, int quality,
                       std::uint8_t* output);

/// Decodes a JPEG image. Of a damaged one whatever can be read is taken, as players of movies do.
/// False, with the pixels in any state, when it is no image, one of another size than `shape`, or
/// broken before its first row.
bool DecodeJpeg(const std::uint8_t* data, std::size_t size, std::uint8_t* pixels,
                const FrameShape& shape);

} // namespace mjpg
