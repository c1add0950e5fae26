#pragma once

#include <cstdint>
#include <span>

// What is done to pixels, row by row. A pixel is 0xAARRGGBB.
namespace utils_statics {

// G * 0.59 + R * 0.3 + B * 0.11, added in this order, cut to a whole number. `alpha` -1 keeps each
// pixel's alpha, any other sets `alpha & 0xFF`.
void GreyRow(std::span<std::uint32_t> row, int alpha);

// How GrayScale changes a pixel.
struct GreyWithKey
{
    std::uint32_t key; // a colour without alpha
    std::uint8_t alpha;
};
void GreyKeyedRow(std::span<std::uint32_t> row, const GreyWithKey& grey);
// The same for pixels of three bytes, blue first.
void GreyKeyedRow24(std::span<std::uint8_t> row, const GreyWithKey& grey);

// (pixel * alpha + background * (255 - alpha)) / 255 for the colours; the alpha becomes `alpha`.
void BlendRow(std::span<std::uint32_t> row, std::uint8_t alpha, std::uint32_t background);
// `background` has as many pixels as `row`, and may be the same ones.
void BlendRow(std::span<std::uint32_t> row, std::uint8_t alpha, const std::uint32_t* background);

// The colours of `source` under the red of each pixel of `mask` as alpha; the result replaces the
// mask. `source` has as many pixels.
void MaskRow(std::span<std::uint32_t> mask, const std::uint32_t* source);

} // namespace utils_statics
