#pragma once

#include <cstddef>
#include <cstdint>

namespace mjpg {

/// Where a decoded frame goes, blue first. Rows may run in either direction in memory.
struct TargetFrame
{
    std::uint8_t* topRow = nullptr;
    std::ptrdiff_t stride = 0; ///< from a row to the one below it
    int width = 0;
    int height = 0;
    int bytesPerPixel = 0; ///< 3 or 4
};

/// Decodes a JPEG image with the platform's decoder. False, with the target in any state, when it is damaged or not of
/// the target's size. Uses COM, which it initialises on this thread for the duration of the call.
bool decodeJpeg(const std::uint8_t* data, std::size_t size, const TargetFrame& target);

} // namespace mjpg
