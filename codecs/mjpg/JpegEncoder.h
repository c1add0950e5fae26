#pragma once

#include <cstddef>
#include <cstdint>

namespace mjpg {

/// An uncompressed frame, blue first. Rows may run in either direction in memory.
struct SourceFrame
{
    const std::uint8_t* topRow = nullptr;
    std::ptrdiff_t stride = 0; ///< from a row to the one below it
    int width = 0;
    int height = 0;
    int bytesPerPixel = 0; ///< 3 or 4
};

constexpr int bestQuality = 10000;

/// Bytes that hold any JPEG image of this size, whatever its quality.
std::uint64_t jpegBound(int width, int height);

/// Encodes a baseline JPEG image (ITU-T T.81) with halved chroma in both directions and the standard Huffman tables.
/// `quality` is 0 (smallest) to 10000 (best) and is limited to these. The number of bytes written, 0 when they do not
/// fit into `capacity`.
///
/// The platform's own encoder is not used, because not every platform's honours the quality: Wine 8 writes the same
/// bytes for every value of it.
std::size_t encodeJpeg(const SourceFrame& frame, int quality, std::uint8_t* output, std::size_t capacity);

} // namespace mjpg
