#pragma once

#include <cstdint>
#include <span>

// Operations on rows of pixels. A pixel is 0xAARRGGBB.
namespace utils_statics {

// Makes the grey G * 0.59 + R * 0.3 + B * 0.11, added in this order and truncated. `alpha` -1 keeps
// each pixel's alpha, any other value sets `alpha & 0xFF`.
void GreyRow(std::span<std::uint32_t> row, int alpha);

// The parameters of GrayScale's change to a pixel.
struct GreyWithKey
{
    std::uint32_t key; // a colour without alpha
    std::uint8_t alpha;
};
void GreyKeyedRow(std::span<std::uint32_t> row, const GreyWithKey& grey);
// Does the same for pixels of three bytes, blue first.
void GreyKeyedRow24(std::span<std::uint8_t> row, const GreyWithKey& grey);

// Makes each colour (pixel * alpha + background * (255 - alpha)) / 255 and each alpha `alpha`.
void BlendRow(std::span<std::uint32_t> row, std::uint8_t alpha, std::uint32_t background);
// `background` has as many pixels as `row`, and may be `row` itself.
void BlendRow(std::span<std::uint32_t> row, std::uint8_t alpha, const std::uint32_t* background);

// Replaces each pixel of `mask` with the colour of `source`; the mask's red becomes the alpha.
// `source` has as many pixels.
void MaskRow(std::span<std::uint32_t> mask, const std::uint32_t* source);

} // namespace utils_statics
